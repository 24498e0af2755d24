// The whole client, live on the server whose address is the first argument.

#include "support/WholeClient.h"

using namespace ambrel;

int main(int argc, char **argv)
{
    const SignedInSettings settings(QString::fromLocal8Bit(argv[1]));
    AmbrelMacApp application(argc, argv);
    const auto window = application.openWindow();
    goLive(*window);
    return QApplication::exec();
}
