#include "local-server/Time.h"

#include <QDateTime>

namespace ambrel::local {

Moment systemTime()
{
    return Moment(QDateTime::currentMSecsSinceEpoch());
}

QString isoTime(Moment moment)
{
    return QDateTime::fromMSecsSinceEpoch(moment.count()).toUTC().toString(Qt::ISODateWithMs);
}

} // namespace ambrel::local
