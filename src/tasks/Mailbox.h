#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace ambrel {

/// The inbox of one thread with a Qt event loop, and the only way in which values cross threads. Everything that is
/// posted passes through one lock, so a race checker sees the crossing although Qt itself is not instrumented.
class Mailbox : public QObject
{
public:
    /// A move of work to another thread; run there once.
    using Letter = std::function<void()>;

    /// The mailbox of the calling thread.
    static std::shared_ptr<Mailbox> ofThisThread();

    /// Runs `letter` on the mailbox's own thread, from its event loop, in the order of posting. Any thread.
    void post(Letter letter);

    /// Runs what has been posted so far; false when that was nothing. Own thread; needed only where no event loop
    /// turns any more.
    bool deliver();

protected:
    void customEvent(QEvent *event) override;

private:
    std::mutex m_mutex;
    std::vector<Letter> m_letters;
};

} // namespace ambrel
