#pragma once

#include "api/AmbrelAPIError.h"
#include "api/TransportError.h"
#include "model/Json.h"
#include "tasks/BackgroundTask.h"
#include "tasks/HandOff.h"

#include <QEventLoop>
#include <QTimer>
#include <memory>
#include <optional>

namespace ambrel {

/// What became of one call: its record, or its failure by type and sentence.
template <typename Record>
class Awaited
{
public:
    explicit Awaited(HandOff<Record> answer) { runDetached(watch(std::move(answer), m_end)); }

    bool isDone() const { return m_end->record || !m_end->failure.isEmpty(); }

    /// Turns the event loop until the operation has ended; a minute at most.
    const Awaited &wait() const
    {
        QEventLoop loop;
        QTimer::singleShot(std::chrono::minutes(1), &loop, &QEventLoop::quit);
        m_end->loop = &loop;
        if (!isDone())
            loop.exec();
        m_end->loop = nullptr;
        return *this;
    }

    /// The record; none after a failure.
    const std::optional<Record> &record() const { return m_end->record; }
    /// "Type: sentence"; empty after success.
    QString failure() const { return m_end->failure; }

private:
    struct End
    {
        std::optional<Record> record;
        QString failure;
        QEventLoop *loop = nullptr;
    };

    static QString named(const char *type, const LocalizedError &error)
    {
        return QString::fromLatin1(type) + QStringLiteral(": ") + error.errorDescription();
    }

    static QCoro::Task<> watch(HandOff<Record> answer, std::shared_ptr<End> end)
    {
        try {
            end->record = co_await answer;
        } catch (const AmbrelAPIError &error) {
            end->failure = named("AmbrelAPIError", error);
        } catch (const TransportError &error) {
            end->failure = named("TransportError", error);
        } catch (const DecodingError &error) {
            end->failure = named("DecodingError", error);
        }
        if (end->loop)
            end->loop->quit();
    }

    std::shared_ptr<End> m_end = std::make_shared<End>();
};

/// Waits for an operation and tells how it failed; empty when it did not.
template <typename Record>
QString failureOf(HandOff<Record> answer)
{
    return Awaited<Record>(std::move(answer)).wait().failure();
}

/// Waits for an operation and returns its record; none when it failed.
template <typename Record>
std::optional<Record> recordOf(HandOff<Record> answer)
{
    return Awaited<Record>(std::move(answer)).wait().record();
}

/// The failure of a transport, as `failureOf` tells it.
inline QString transport(const char *sentence)
{
    return QStringLiteral("TransportError: ") + QString::fromUtf8(sentence);
}

} // namespace ambrel
