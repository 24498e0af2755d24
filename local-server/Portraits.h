#pragma once

#include "local-server/People.h"
#include "model/PhotoText.h"

#include <QHash>
#include <QImage>
#include <QList>

namespace ambrel::local {

/// Draws photo number `index` (0 to 3) of a person with this look.
QImage drawPortrait(const Look &look, int index);

/// The photos of the simulated people, as data URLs. Each is drawn when somebody first gets to see it, then kept.
class Portraits
{
public:
    /// The first `count` photos of `person`.
    QList<PhotoText> photos(const Person &person, qsizetype count);

private:
    QHash<const Person *, QList<PhotoText>> m_drawn;
};

} // namespace ambrel::local
