#include "ui/window/AmbrelMacApp.h"

int main(int argc, char **argv)
{
    ambrel::AmbrelMacApp application(argc, argv);
    const auto window = application.openWindow();
    return QApplication::exec();
}
