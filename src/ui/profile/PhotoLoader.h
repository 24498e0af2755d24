#pragma once

#include "model/PhotoText.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace ambrel {

/// What came of an order. `image` is nothing when the text is no photo.
struct LoadedPhoto
{
    bool isUnchanged = false; ///< the text equals the one that is shown; nothing was decoded
    std::optional<QImage> image;
};

/// A photo that a view wants.
struct PhotoOrder
{
    PhotoText photo;
    QSize frame;                    ///< device pixels
    std::optional<PhotoText> shown; ///< what the view shows in this size already
    std::function<void(const LoadedPhoto &)> receive;
    std::function<bool()> isOnScreen = [] { return true; }; ///< who can be seen goes first; asked on the main thread
};

/// Decodes photos on the worker pool, a few at a time: those on screen first, then in the order in which they were
/// wanted. Keeps no photo. Main thread only.
class PhotoLoader : public QObject
{
    Q_OBJECT

public:
    /// The loader of the window that `view` stands in.
    static PhotoLoader &of(const QWidget &view);

    /// Has the photo decoded and handed to `receive`, from the event loop. Dropping the returned order calls it off:
    /// `receive` is then not called, and the work ends soon or never begins.
    [[nodiscard]] std::shared_ptr<const PhotoOrder> load(PhotoOrder order);

private:
    using QObject::QObject;

    void startNext();
    std::shared_ptr<const PhotoOrder> takeNext();
    void finish(const std::weak_ptr<const PhotoOrder> &order, const LoadedPhoto &photo);

    std::deque<std::weak_ptr<const PhotoOrder>> m_waiting;
    int m_running = 0;
};

} // namespace ambrel
