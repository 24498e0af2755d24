// The floor for starting and for memory: a widget window with nothing in it.

#include <QApplication>
#include <QWidget>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(980, 680);
    window.show();
    return QApplication::exec();
}
