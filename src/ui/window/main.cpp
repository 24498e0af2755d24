#include "tasks/Worker.h"
#include "ui/window/AmbrelMacApp.h"

#include <cstdlib>

static int run(int &argc, char **argv)
{
    ambrel::AmbrelMacApp application(argc, argv);
    const auto window = application.openWindow();
    return window ? QApplication::exec() : EXIT_SUCCESS;
}

int main(int argc, char **argv)
{
    const int code = run(argc, argv);
    if (!ambrel::waitForWorkers(std::chrono::seconds(0)))
        std::_Exit(code); // a worker that hangs delays nobody, and nothing is taken away under it
    return code;
}
