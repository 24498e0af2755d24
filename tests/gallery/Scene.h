#pragma once

#include "state/AmbrelAppState.h"

#include <QList>
#include <QSize>
#include <QString>
#include <QWidget>

namespace ambrel {

inline constexpr QSize smallestWindow{980, 680};
inline constexpr QSize comfortableWindow{1280, 900};
inline constexpr QSize largeWindow{1600, 1000};

/// One situation in which the window can be seen.
struct Scene
{
    QString name; ///< of its picture
    QSize size;
    /// Brings the state into this situation; it is as on the first start before.
    void (*arrange)(AmbrelAppState &state);
    /// What is done at the window afterwards. Null for nothing.
    void (*act)(QWidget &window) = nullptr;
    /// Whether the window looks as it should at this moment. Null for always.
    bool (*isMoment)(const QWidget &window) = nullptr;
};

/// Every situation worth looking at.
const QList<Scene> &scenes();
/// The scene with this name; there must be one.
const Scene &sceneNamed(const QString &name);

} // namespace ambrel
