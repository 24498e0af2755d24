#pragma once

#include "model/PhotoText.h"
#include "model/ResponseRecords.h"

#include <QImage>
#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>
#include <memory>
#include <optional>

namespace ambrel {

struct PhotoOrder;
struct LoadedPhoto;

/// A rounded frame with one photo in it, or the lock placeholder. The photo is decoded off the main thread for the
/// size of the frame, and fades in unless motion is unwelcome: a new person's frame stays plain until then, and while
/// one person's photo changes the old one stays. Equal photos, however they came, are neither decoded nor painted
/// again. Needs a view environment.
class PhotoFrame : public QWidget
{
    Q_OBJECT

public:
    /// What a frame without a photo shows: the symbol of a person and, if not empty, words beneath it.
    struct Placeholder
    {
        int symbolSize = 0; ///< none when 0
        QString words;
    };

    PhotoFrame(Placeholder placeholder, QWidget *parent);
    ~PhotoFrame() override;

    /// Shows the first photo of `match`, as far as its heat level allows.
    void setMatch(const MatchResult &match);
    /// Shows this photo, or the placeholder for nothing. `id` stays the same while it is to be seen as the same photo
    /// of the same person; `name` is what a screen reader says of it.
    void setPhoto(const QString &id, const QString &name, const std::optional<PhotoText> &photo);
    /// True when there is no photo to be seen: none given, or its text is no photo.
    bool isLocked() const { return m_content == Content::Placeholder; }
    /// True while a photo is being decoded, or compared with the one that is shown, or fades in.
    bool isWaiting() const { return m_order || isFading(); }

Q_SIGNALS:
    /// The frame shows something else.
    void contentChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    enum class Content { Nothing, Photo, Placeholder };

    QSize devicePixels() const;
    void orderPhoto();
    void receive(const LoadedPhoto &loaded);
    void setContent(Content content, const QImage &image = {});
    void fadeIn();
    bool isFading() const;
    void updateAccessibleName();
    void paintPlaceholder(QPainter &painter) const;
    void paintPhoto(QPainter &painter) const;

    const Placeholder m_placeholder;
    QString m_id;
    QString m_name;
    std::optional<PhotoText> m_photo; // the newest text, so that no older reply is kept alive
    std::shared_ptr<const PhotoOrder> m_order;

    Content m_content = Content::Nothing;
    QImage m_image;
    QPointer<QVariantAnimation> m_fade; // there while the photo fades in
    std::optional<PhotoText> m_shown;   // the text that the content came of
    QSize m_shownFrame;                 // device pixels
};

} // namespace ambrel
