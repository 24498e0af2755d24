#include "tasks/Mailbox.h"

#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace ambrel {

std::shared_ptr<Mailbox> Mailbox::ofThisThread()
{
    thread_local const auto mailbox = [] {
        auto made = std::make_shared<Mailbox>();
        made->open();
        return made;
    }();
    return mailbox;
}

Mailbox::Mailbox() : m_bell(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_bell < 0)
        qFatal("no descriptor left for a mailbox");
}

Mailbox::~Mailbox()
{
    close();
    ::close(m_bell);
}

void Mailbox::open()
{
    m_notifier.emplace(m_bell, QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this] { deliver(); });
}

void Mailbox::close()
{
    m_notifier.reset();
}

void Mailbox::post(Letter letter)
{
    bool isFirst = false;
    {
        const std::lock_guard lock(m_mutex);
        m_letters.push_back(std::move(letter));
        isFirst = m_letters.size() == 1;
    }
    if (isFirst) // rung outside the lock: who wakes up may take this thread's processor, and would wait for the lock
        eventfd_write(m_bell, 1);
}

bool Mailbox::deliver()
{
    std::vector<Letter> letters;
    {
        const std::lock_guard lock(m_mutex);
        eventfd_t rings = 0;
        eventfd_read(m_bell, &rings);
        letters.swap(m_letters);
    }
    for (Letter &letter : letters)
        std::exchange(letter, nullptr)();
    return !letters.empty();
}

} // namespace ambrel
