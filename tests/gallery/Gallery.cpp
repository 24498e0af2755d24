#include "gallery/SceneWindow.h"

#include <QDir>
#include <QTest>
#include <cstdio>

using namespace ambrel;

/// Writes pictures into the folder that the first argument names. A second one ends the names of the pictures, further
/// ones choose the scenes; without them every scene is drawn.
int main(int argc, char **argv)
{
    SceneApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2)
        qFatal("Usage: gallery FOLDER [SUFFIX [SCENE...]]");
    const QDir folder(arguments.at(1));
    if (!folder.mkpath(QStringLiteral(".")))
        qFatal("cannot make the folder %s", qPrintable(folder.path()));
    const QString suffix = arguments.value(2);
    const QStringList chosen = arguments.mid(3);
    for (const Scene &scene : scenes()) {
        if (!chosen.isEmpty() && !chosen.contains(scene.name))
            continue;
        const QString file = folder.filePath(scene.name + suffix + QStringLiteral(".png"));
        constexpr int smallestFile = 0;
        if (!SceneWindow(scene).picture().convertToFormat(QImage::Format_RGB32).save(file, "PNG", smallestFile))
            qFatal("cannot write %s", qPrintable(file));
        std::puts(qPrintable(file));
    }
    return 0;
}
