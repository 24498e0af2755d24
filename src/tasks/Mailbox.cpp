#include "tasks/Mailbox.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

namespace ambrel {

std::shared_ptr<Mailbox> Mailbox::ofThisThread()
{
    thread_local const auto mailbox = std::make_shared<Mailbox>();
    return mailbox;
}

void Mailbox::post(Letter letter)
{
    const std::lock_guard lock(m_mutex);
    m_letters.push_back(std::move(letter));
    // Woken under the lock: the receiver takes the same lock before it frees the event.
    if (m_letters.size() == 1)
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool Mailbox::deliver()
{
    std::vector<Letter> letters;
    {
        const std::lock_guard lock(m_mutex);
        letters.swap(m_letters);
    }
    for (Letter &letter : letters)
        std::exchange(letter, nullptr)();
    return !letters.empty();
}

void Mailbox::customEvent(QEvent *)
{
    deliver();
}

} // namespace ambrel
