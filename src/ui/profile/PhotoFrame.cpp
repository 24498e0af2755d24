#include "ui/profile/PhotoFrame.h"

#include "state/MatchProximity.h"
#include "toolkit/AccessibleRole.h"
#include "toolkit/BidiIsolation.h"
#include "toolkit/ReducedMotion.h"
#include "ui/look/Painting.h"
#include "ui/look/Theme.h"
#include "ui/profile/PersonSymbol.h"
#include "ui/profile/PhotoLoader.h"

#include <QPainter>
#include <utility>

namespace ambrel {

PhotoFrame::PhotoFrame(Placeholder placeholder, QWidget *parent)
    : QWidget(parent), m_placeholder(std::move(placeholder))
{
    setAccessibleRole(*this, QAccessible::Graphic);
}

PhotoFrame::~PhotoFrame() = default;

void PhotoFrame::setMatch(const MatchResult &match)
{
    const QList<PhotoText> photos = visiblePhotos(match);
    const bool hasPhoto = isPhotoVisible(match) && !photos.isEmpty();
    setPhoto(match.userId, QStringLiteral("Photo of ") + isolated(match.displayName),
             hasPhoto ? std::optional(photos.first()) : std::nullopt);
}

void PhotoFrame::setPhoto(const QString &id, const QString &name, const std::optional<PhotoText> &photo)
{
    const bool isSame = std::exchange(m_id, id) == id;
    m_name = name;
    m_photo = photo;
    if (!photo || !isSame) {
        m_order.reset();
        m_shown.reset();
        setContent(photo ? Content::Nothing : Content::Placeholder);
    }
    updateAccessibleName();
    orderPhoto();
}

QSize PhotoFrame::devicePixels() const
{
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

void PhotoFrame::orderPhoto()
{
    const QSize frame = devicePixels();
    // A frame that was never seen has no size yet.
    if (!m_photo || frame.isEmpty() || (!isVisible() && !m_shown))
        return;
    const bool isShown = m_shown && m_shownFrame == frame;
    const bool isAnswered =
        m_order ? m_order->photo.isSameAs(*m_photo) && m_order->frame == frame : isShown && m_shown->isSameAs(*m_photo);
    if (isAnswered)
        return;
    m_order = PhotoLoader::of(*this).load({
        .photo = *m_photo,
        .frame = frame,
        .shown = isShown ? m_shown : std::nullopt,
        .receive = [this](const LoadedPhoto &loaded) { receive(loaded); },
        .isOnScreen = [this] { return !visibleRegion().isEmpty(); },
    });
}

void PhotoFrame::receive(const LoadedPhoto &loaded)
{
    m_shown = m_order->photo;
    m_shownFrame = m_order->frame;
    m_order.reset();
    if (!loaded.isUnchanged)
        setContent(loaded.image ? Content::Photo : Content::Placeholder, loaded.image.value_or(QImage()));
}

void PhotoFrame::setContent(Content content, const QImage &image)
{
    if (content == m_content && content != Content::Photo)
        return;
    const bool isNew = m_content != content;
    m_content = content;
    m_image = image;
    delete m_fade;
    if (content == Content::Photo && isNew)
        fadeIn();
    updateAccessibleName();
    update();
    Q_EMIT contentChanged();
}

void PhotoFrame::fadeIn()
{
    if (isMotionReduced() || visibleRegion().isEmpty())
        return;
    m_fade = new QVariantAnimation(this); // deletes itself at its end
    m_fade->setStartValue(0.0);
    m_fade->setEndValue(1.0);
    m_fade->setDuration(int(theme::photoFadeDuration.count()));
    connect(m_fade, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    m_fade->start(QAbstractAnimation::DeleteWhenStopped);
}

bool PhotoFrame::isFading() const
{
    return m_fade && m_fade->state() == QAbstractAnimation::Running;
}

void PhotoFrame::updateAccessibleName()
{
    const QString name = isLocked() ? QStringLiteral("Photo locked") : m_name;
    if (name != accessibleName())
        setAccessibleName(name);
}

void PhotoFrame::paintEvent(QPaintEvent *)
{
    orderPhoto(); // anew when the window has come to a screen of another scale
    QPainter painter(this);
    const bool isCovered = m_content == Content::Photo && !m_image.hasAlphaChannel() && !isFading();
    if (!isCovered)
        fillRounded(painter, rect(), theme::photoFrame);
    if (m_content == Content::Placeholder)
        paintPlaceholder(painter);
    else if (m_content == Content::Photo)
        paintPhoto(painter);
}

void PhotoFrame::paintPhoto(QPainter &painter) const
{
    QBrush brush(m_image);
    brush.setTransform(QTransform::fromScale(double(width()) / m_image.width(), double(height()) / m_image.height()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (isFading())
        painter.setOpacity(m_fade->currentValue().toReal());
    fillRounded(painter, rect(), brush);
}

void PhotoFrame::paintPlaceholder(QPainter &painter) const
{
    const QFont font = theme::font(theme::TextStyle::Caption);
    const int wordsHeight = m_placeholder.words.isEmpty() ? 0 : QFontMetrics(font).height();
    const int spacing = m_placeholder.words.isEmpty() ? 0 : theme::largePhotoSymbolSpacing;
    const int top = (height() - m_placeholder.symbolSize - spacing - wordsHeight) / 2;
    const QPointF center(width() / 2.0, top + m_placeholder.symbolSize / 2.0);
    paintPersonSymbol(painter, center, m_placeholder.symbolSize, theme::secondaryText);
    painter.setFont(font);
    painter.setPen(theme::secondaryText);
    painter.drawText(QRect(0, top + m_placeholder.symbolSize + spacing, width(), wordsHeight), Qt::AlignCenter,
                     m_placeholder.words);
}

void PhotoFrame::resizeEvent(QResizeEvent *)
{
    orderPhoto();
}

void PhotoFrame::showEvent(QShowEvent *)
{
    orderPhoto();
}

} // namespace ambrel
