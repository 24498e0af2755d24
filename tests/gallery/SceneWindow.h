#pragma once

#include "gallery/Scene.h"
#include "ui/window/AmbrelMacApp.h"

#include <QImage>
#include <QRect>
#include <QTemporaryDir>
#include <memory>

namespace ambrel {

/// The application with settings of its own, on a server address that leads nowhere.
class SceneApplication
{
public:
    SceneApplication(int &argc, char **argv);

private:
    QTemporaryDir m_settings;
    std::unique_ptr<AmbrelMacApp> m_application;
};

/// The application's own window in one scene. At most one at a time: all share the application's state.
class SceneWindow
{
public:
    /// `size` other than the scene's own may be asked for.
    explicit SceneWindow(const Scene &scene, const QSize &size = {});

    QWidget &widget() { return *m_window; }
    AmbrelAppState &state() const;
    /// Waits until the state is shown, every photo on screen is there and the moment of the scene has come.
    void settle() const;
    /// All that the window shows now, in device pixels.
    QImage picture() const;
    /// Where a view stands in the window.
    QRect placeOf(const QWidget &view) const;
    /// The only view of this type.
    template <typename View>
    View &find() const
    {
        const auto views = m_window->findChildren<View *>();
        Q_ASSERT(views.size() == 1);
        return *views.first();
    }

private:
    const Scene &m_scene;
    std::unique_ptr<QWidget> m_window;
};

} // namespace ambrel
