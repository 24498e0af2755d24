#pragma once

#include <QFont>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <ctime>

namespace ambrel {

/// Finds fonts for rare characters a few at a time. When a font lacks a character, Qt looks through all fonts of the
/// system, for each script anew: a name of 200 rare characters would stop the window for seconds. Main thread only.
class FontSearch : public QObject
{
    Q_OBJECT

public:
    /// The one of the application, which owns it.
    static FontSearch &instance();

    /// `text` with U+FFFD for each character that has to wait, because the search has taken enough time in this turn of
    /// the event loop. `goneOn` tells when to ask again.
    QString shownFor(const QString &text, const QFont &font);

Q_SIGNALS:
    /// Characters that had to wait may now be asked for again.
    void goneOn();

private:
    using QObject::QObject;

    bool isFound(const QString &character, const QString &neighbour, const QFont &font);
    void goOn();

    QHash<QFont, QSet<QString>> m_found; ///< scripts and characters
    std::clock_t m_spent = 0;            ///< processor time in this turn of the event loop
    bool m_isScheduled = false;
    bool m_hasWaiting = false;
};

} // namespace ambrel
