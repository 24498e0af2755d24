#pragma once

#include "state/StateFixture.h"
#include "ui/look/AmbrelStyle.h"
#include "ui/window/ViewEnvironment.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QThread>
#include <QVBoxLayout>

namespace ambrel {

/// A shown window with one view on a state of its own. Its server address leads nowhere.
template <typename View>
class ViewFixture
{
public:
    explicit ViewFixture(const QSize &size, const QVariantMap &stored = {}, const ViewTimings &timings = keysAtOnce())
        : m_state(withHarmlessServer(stored))
    {
        ViewEnvironment::inject(window, m_state.state, timings);
        auto *const layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        view = new View(&window);
        layout->addWidget(view);
        window.setGeometry(QRect(QPoint(10, 10), size));
        window.show();
        window.activateWindow();
        QCursor::setPos(1910, 1190); // hovers nothing
        QTRY_VERIFY(window.isActiveWindow());
    }

    ~ViewFixture()
    {
        delete view;
        QCoreApplication::processEvents(); // what slept in the view wakes up and ends
    }
    Q_DISABLE_COPY_MOVE(ViewFixture)

    AmbrelAppState &state() { return *m_state.state; }
    /// Lets the views see what has changed, and all happen that is due then.
    void refresh()
    {
        while (QThread::currentThread()->eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
        }
    }

    /// The child that a screen reader knows by this name.
    template <typename Widget>
    Widget *named(const QString &name)
    {
        for (auto *const candidate : window.findChildren<Widget *>()) {
            if (candidate->accessibleName() == name)
                return candidate;
        }
        return nullptr;
    }
    /// The button with this label.
    QAbstractButton *button(const QString &label)
    {
        for (auto *const candidate : window.findChildren<QAbstractButton *>()) {
            if (candidate->text() == label && candidate->isVisible())
                return candidate;
        }
        return nullptr;
    }

private:
    /// Layers take keys as soon as they are there.
    static ViewTimings keysAtOnce()
    {
        ViewTimings timings;
        timings.keyQuiet = std::chrono::milliseconds(0);
        return timings;
    }
    static QVariantMap withHarmlessServer(QVariantMap stored)
    {
        stored.insert(QStringLiteral("serverBaseURL"), QStringLiteral("http://127.0.0.1:9"));
        return stored;
    }

    StateFixture m_state;

public:
    QWidget window;      // goes before the state
    QPointer<View> view; // a test may take it away
};

} // namespace ambrel
