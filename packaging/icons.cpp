// Writes the application's icons, drawn as the window draws the brand mark. Usage:
//   ambrel-icons FOLDER NAME   all that a theme of the Linux desktops has, as FOLDER/SIZE/apps/NAME.SUFFIX
//   ambrel-icons FILE          one large picture, in the format of the file's suffix
#include "ui/look/AmbrelLogo.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <cstdio>
#include <cstdlib>

namespace {

/// The path's outline as an SVG path of whole numbers; `scale` of them to a unit.
QByteArray svgOutline(const QPainterPath &path, qreal scale)
{
    QByteArray outline;
    const auto point = [scale](const QPainterPath::Element &element) {
        return QByteArray::number(qRound(element.x * scale)) + ' ' + QByteArray::number(qRound(element.y * scale));
    };
    for (int index = 0; index < path.elementCount(); ++index) {
        const QPainterPath::Element element = path.elementAt(index);
        if (element.isMoveTo())
            outline += (index == 0 ? "M" : "ZM") + point(element);
        else if (element.isLineTo())
            outline += "L" + point(element);
        else if (element.isCurveTo())
            outline +=
                "C" + point(element) + ' ' + point(path.elementAt(index + 1)) + ' ' + point(path.elementAt(index + 2));
    }
    return outline + "Z";
}

QByteArray svgDrawing()
{
    constexpr qreal size = 128;
    constexpr qreal scale = 100;
    const QByteArray edge = QByteArray::number(qRound(size * scale));
    QByteArray drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"128\" height=\"128\" viewBox=\"0 0 " +
                         edge + " " + edge + "\">\n";
    for (const ambrel::AmbrelLogo::Area &area : ambrel::AmbrelLogo::areas(size, false)) {
        drawing += "<path fill=\"" + area.colour.name().toLatin1() + "\" fill-opacity=\"" +
                   QByteArray::number(area.colour.alphaF(), 'f', 3) + "\" fill-rule=\"evenodd\" d=\"" +
                   svgOutline(area.path, scale) + "\"/>\n";
    }
    return drawing + "</svg>\n";
}

bool writeDrawing(const QString &path)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(svgDrawing()) > 0 && file.commit();
}

bool writePicture(const QString &path, int size)
{
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    ambrel::AmbrelLogo::paint(painter, size, false);
    painter.end();
    return picture.save(path);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 2)
        return writePicture(arguments.at(1), 256) ? EXIT_SUCCESS : EXIT_FAILURE;
    if (arguments.size() != 3) {
        std::fputs("Usage: ambrel-icons FOLDER NAME, or ambrel-icons FILE\n", stderr);
        return EXIT_FAILURE;
    }
    const auto place = [&arguments](const QString &size, const QString &suffix) {
        const QString folder = arguments.at(1) + u'/' + size + QStringLiteral("/apps");
        QDir().mkpath(folder);
        return folder + u'/' + arguments.at(2) + suffix;
    };
    bool isWritten = writeDrawing(place(QStringLiteral("scalable"), QStringLiteral(".svg")));
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512})
        isWritten = isWritten && writePicture(place(QStringLiteral("%1x%1").arg(size), QStringLiteral(".png")), size);
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}
