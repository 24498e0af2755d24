#pragma once

#include "state/StateFixture.h"
#include "ui/look/AmbrelStyle.h"
#include "ui/look/Theme.h"
#include "ui/window/ContentView.h"
#include "ui/window/ViewEnvironment.h"

#include <QEventLoop>
#include <QVBoxLayout>

namespace ambrel {

/// The whole window of the client, visible and live against a server, with short pauses between its cycles.
class LiveWindow
{
public:
    LiveWindow(const QString &serverUrl, const LiveTimings &timings)
        : m_fixture({{QStringLiteral("serverBaseURL"), serverUrl}, {QStringLiteral("userId"), QStringLiteral("me")}},
                    timings)
    {
        AmbrelStyle::install();
        ViewEnvironment &environment = ViewEnvironment::inject(window, m_fixture.state);
        auto *const layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(new ContentView(&window));
        window.resize(theme::windowComfortableSize);
        window.show();
        QObject::connect(&environment, &ViewEnvironment::stateDidChange, &window, [this] { countCycle(); });
        m_fixture.state->startLive();
    }

    /// Lets the client live until it has taken over the replies of `count` more cycles.
    void runCycles(int count)
    {
        m_cyclesToRun = count;
        m_loop.exec();
    }

    AmbrelAppState &state() { return *m_fixture.state; }

private:
    void countCycle()
    {
        const auto *const list = m_fixture.state->matches->constData();
        if (std::exchange(m_list, list) != list && --m_cyclesToRun == 0)
            m_loop.quit();
    }

    StateFixture m_fixture;
    const MatchResult *m_list = nullptr;
    QEventLoop m_loop;
    int m_cyclesToRun = 0;

public:
    QWidget window; // goes before the state
};

} // namespace ambrel
