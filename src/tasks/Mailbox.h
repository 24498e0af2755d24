#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace ambrel {

/// The inbox of one thread with a Qt event loop, and the only way in which values cross threads. Posting calls
/// nothing of the toolkit: everything passes through one lock and one descriptor of our own, so that a race checker
/// sees the whole crossing although the toolkit is not instrumented.
class Mailbox
{
public:
    /// A move of work to another thread; run there once.
    using Letter = std::function<void()>;

    /// The open mailbox of the calling thread.
    static std::shared_ptr<Mailbox> ofThisThread();

    /// Belongs to no thread yet; what is posted waits.
    Mailbox();
    ~Mailbox();
    Q_DISABLE_COPY_MOVE(Mailbox)

    /// Delivers on the calling thread's event loop from now on.
    void open();
    /// Delivers no more. On the thread that opened it, before that thread ends.
    void close();

    /// Runs `letter` on the mailbox's own thread, from its event loop, in the order of posting. Any thread.
    void post(Letter letter);

    /// Runs what has been posted so far; false when that was nothing. Own thread; needed only where no event loop
    /// turns any more.
    bool deliver();

private:
    int m_bell; ///< an event descriptor: readable while there are letters
    std::optional<QSocketNotifier> m_notifier;
    std::mutex m_mutex;
    std::vector<Letter> m_letters;
};

} // namespace ambrel
