#pragma once

#include "model/ResponseRecords.h"
#include "support/DrawnPhoto.h"
#include "ui/profile/PhotoFrame.h"

#include <QAccessible>
#include <QWidget>
#include <algorithm>

namespace ambrel {

/// A match for the views, in the nearest tier where nothing else is said.
inline MatchResult person(const QString &name, const QList<PhotoText> &photos = {},
                          const QString &heatLevel = QStringLiteral("VERY_HOT"))
{
    MatchResult match;
    match.userId = name.toLower();
    match.displayName = name;
    match.distanceMeters = 42;
    match.aToB = 72;
    match.bToA = 64;
    match.heatLevel = heatLevel;
    match.profilePhotos = photos;
    return match;
}

/// What can be read in a view: the names of its visible text labels.
inline QStringList visibleTexts(const QWidget &view)
{
    QStringList texts;
    for (auto *const widget : view.findChildren<QWidget *>()) {
        const auto *const face = QAccessible::queryAccessibleInterface(widget);
        if (widget->isVisible() && face && face->role() == QAccessible::StaticText)
            texts.append(face->text(QAccessible::Name));
    }
    return texts;
}

/// True once no frame that can be seen in `view` waits for a photo any more.
inline bool allPhotosAreThere(const QWidget &view)
{
    const auto frames = view.findChildren<PhotoFrame *>();
    return std::none_of(frames.begin(), frames.end(),
                        [](const PhotoFrame *frame) { return frame->isVisible() && frame->isWaiting(); });
}

} // namespace ambrel
