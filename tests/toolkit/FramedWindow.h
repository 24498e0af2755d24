#pragma once

#include "support/ChildProcess.h"
#include "toolkit/ClientSideFrame.h"
#include "toolkit/WindowControls.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QVBoxLayout>

namespace ambrel {

/// The X server's pointer, as a hand moves it.
namespace pointer {

inline void act(const QList<QByteArray> &arguments)
{
    QCOMPARE(ChildProcess::run("xdotool", arguments), 0);
    QCoreApplication::processEvents();
}

inline void moveTo(QPoint place)
{
    act({"mousemove", QByteArray::number(place.x()), QByteArray::number(place.y())});
}

inline void press()
{
    act({"mousedown", "1"});
}
inline void release()
{
    act({"mouseup", "1"});
}

inline void clickAt(QPoint place)
{
    moveTo(place);
    press();
    release();
}

/// Clicks once the widget has seen the pointer: a window that is only just being shown misses an earlier press.
inline void clickOn(QWidget &widget)
{
    moveTo(widget.mapToGlobal(widget.rect().center()));
    QTRY_VERIFY(widget.underMouse());
    press();
    release();
}

/// The clicks of different tests are no double clicks, however quickly they follow each other.
inline void forgetEarlierClicks()
{
    QApplication::setDoubleClickInterval(0);
}

inline void doubleClickAt(QPoint place)
{
    QApplication::setDoubleClickInterval(400);
    moveTo(place);
    act({"click", "--repeat", "2", "--delay", "20", "1"});
}

/// What the application has seen of the pointer.
class Witness : public QObject
{
public:
    Witness() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress)
            pressed = true;
        if (event->type() == QEvent::MouseMove)
            movedTo = static_cast<QMouseEvent *>(event)->globalPosition().toPoint();
        return false;
    }
    bool pressed = false;
    QPoint movedTo;
};

/// Presses at `from` and goes to `to`, until `arrived` is true or it gives up; then lets go. The pointer keeps
/// trembling at its target, since a window manager sees only what moves after it has taken the pointer over.
template <typename Arrived>
bool drag(QPoint from, QPoint to, const Arrived &arrived)
{
    const Witness witness;
    moveTo(from);
    press();
    bool done = QTest::qWaitFor([&] { return witness.pressed; });
    const QPoint nudge = from + QPoint(1, 1);
    moveTo(nudge); // the window manager counts from where the pointer is when it is asked
    done = done && QTest::qWaitFor([&] { return witness.movedTo == nudge; });
    done = done && QTest::qWaitFor([&] {
               moveTo(to + QPoint(1, 1) + QPoint(1, 1));
               moveTo(to + QPoint(1, 1));
               return arrived();
           });
    release();
    return done;
}

/// Whether the application goes on seeing the pointer while it is dragged from `from` to `to`: a window manager that
/// moves the window would keep the movements for itself.
inline bool dragStaysInTheApplication(QPoint from, QPoint to)
{
    const Witness witness;
    return drag(from, to, [&] { return witness.movedTo == to + QPoint(1, 1); });
}

/// Where the X server has the window; a window manager tells the application only when a move is over.
inline QPoint placeOf(const QWidget &window)
{
    const QString answer =
        QString::fromLatin1(ChildProcess::outputOf("xwininfo", {"-id", QByteArray::number(window.winId())}));
    const auto number = [&answer](const QString &name) {
        return QRegularExpression(name + QStringLiteral(":\\s+(-?\\d+)")).match(answer).captured(1).toInt();
    };
    return {number(QStringLiteral("Absolute upper-left X")), number(QStringLiteral("Absolute upper-left Y"))};
}

/// Whether the window manager has put the window away; Qt calls it minimised as soon as that is asked for.
inline bool isIconified(const QWidget &window)
{
    return ChildProcess::outputOf("xprop", {"-id", QByteArray::number(window.winId()), "WM_STATE"}).contains("Iconic");
}

/// Drags the window by `distance` at a place without grip; it moves from where the drag is told from a click.
inline bool dragWindow(const QWidget &window, QPoint from, QPoint distance)
{
    const Witness witness;
    const QPoint start = from + QPoint(20, 0);
    const QPoint expected = window.pos() + distance;
    moveTo(from);
    press();
    bool done = QTest::qWaitFor([&] { return witness.pressed; });
    moveTo(start);
    done = done && QTest::qWaitFor([&] { return witness.movedTo == start; });
    done = done && QTest::qWaitFor([&] {
               moveTo(start + distance + QPoint(1, 1));
               moveTo(start + distance);
               return placeOf(window) == expected;
           });
    release();
    return done && QTest::qWaitFor([&] { return window.pos() == placeOf(window); });
}

} // namespace pointer

/// A window with a frame of its own, 400 x 300 at 200, 200 and at least 240 x 180.
class FramedWindow : public QWidget
{
public:
    FramedWindow()
    {
        new ClientSideFrame(*this);
        setMinimumSize(240, 180);
        setGeometry(200, 200, 400, 300);
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins(18, 18, 18, 18);
        layout->addWidget(&controls, 0, Qt::AlignRight);
        layout->addWidget(&label);
        layout->addWidget(&field);
        layout->addWidget(&button);
        layout->addWidget(&disabled);
        layout->addWidget(&background, 1);
        setWindowBackground(background);
        disabled.setEnabled(false);
        show();
    }

    QPoint middleOf(const QWidget &child) const { return child.mapToGlobal(child.rect().center()); }
    /// A place on the screen without any child.
    QPoint emptyPlace() const { return mapToGlobal(QPoint(width() / 2, height() - 30)); }

    WindowControls controls;
    QWidget background; // an area of its own, with a text in it
    QLabel text{QStringLiteral("Text"), &background};
    QLabel label{QStringLiteral("Label")};
    QLineEdit field{QStringLiteral("some text to select")};
    QPushButton button{QStringLiteral("Button")};
    QPushButton disabled{QStringLiteral("Disabled")};
};

/// The grips of a window and what a pull outwards at each does to its geometry.
struct Grip
{
    const char *name;
    QPoint place; // -1, 0, 1: left or top, middle, right or bottom
    Qt::CursorShape cursor;

    /// Where to press.
    QPoint in(const QRect &geometry) const
    {
        constexpr int inside = 2;
        const auto along = [](int side, int from, int length) {
            return side < 0 ? from + inside : side > 0 ? from + length - 1 - inside : from + length / 2;
        };
        return {along(place.x(), geometry.x(), geometry.width()), along(place.y(), geometry.y(), geometry.height())};
    }
    /// Whether the edges opposite to the grip are the same in both.
    bool keepsOppositeEdges(const QRect &before, const QRect &after) const
    {
        return (place.x() < 0 ? before.right() == after.right() : before.left() == after.left()) &&
               (place.y() < 0 ? before.bottom() == after.bottom() : before.top() == after.top());
    }
    /// What becomes of `geometry` when the grip is pulled outwards by `pixels`; inwards if negative.
    QRect pulled(const QRect &geometry, int pixels) const
    {
        return geometry.adjusted(place.x() < 0 ? -pixels : 0, place.y() < 0 ? -pixels : 0, place.x() > 0 ? pixels : 0,
                                 place.y() > 0 ? pixels : 0);
    }
};

inline constexpr Grip grips[] = {
    {"left", {-1, 0}, Qt::SizeHorCursor},          {"right", {1, 0}, Qt::SizeHorCursor},
    {"top", {0, -1}, Qt::SizeVerCursor},           {"bottom", {0, 1}, Qt::SizeVerCursor},
    {"top left", {-1, -1}, Qt::SizeFDiagCursor},   {"top right", {1, -1}, Qt::SizeBDiagCursor},
    {"bottom left", {-1, 1}, Qt::SizeBDiagCursor}, {"bottom right", {1, 1}, Qt::SizeFDiagCursor},
};

inline void addGripRows()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(grips)); ++i)
        QTest::newRow(grips[i].name) << i;
}

/// The grip of the test's current row.
inline const Grip &currentGrip()
{
    QFETCH(int, index);
    return grips[index];
}

/// Fails the test unless a pull at the current grip resizes the window, until the release and no longer.
inline void proveThatTheGripResizes(const QWidget &window)
{
    const Grip &grip = currentGrip();
    const QPoint from = grip.in(window.geometry());
    const QRect expected = grip.pulled(window.geometry(), 40);
    QVERIFY(pointer::drag(from, from + 40 * grip.place, [&] { return window.geometry() == expected; }));
    pointer::moveTo(from);
    QCOMPARE(window.geometry(), expected);
}

/// Fails the test unless a push at the current grip makes the window as small as it may be and leaves it in its place.
inline void proveThatTheGripRefusesToShrinkBelowTheMinimum(const QWidget &window)
{
    const Grip &grip = currentGrip();
    const QRect before = window.geometry();
    const QPoint from = grip.in(before);
    const QSize smallest(grip.place.x() ? window.minimumWidth() : before.width(),
                         grip.place.y() ? window.minimumHeight() : before.height());
    QVERIFY(pointer::drag(from, from - 350 * grip.place, [&] { return window.size() == smallest; }));
    QVERIFY(grip.keepsOppositeEdges(before, window.geometry()));
}

} // namespace ambrel
