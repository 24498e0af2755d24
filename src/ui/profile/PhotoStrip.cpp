#include "ui/profile/PhotoStrip.h"

#include "tasks/Worker.h"
#include "toolkit/BidiIsolation.h"
#include "ui/look/KeyboardScrolling.h"
#include "ui/look/Theme.h"
#include "ui/profile/PhotoFrame.h"

#include <QKeyEvent>
#include <QPointer>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

constexpr int step = theme::thumbnailSize.width() + theme::thumbnailSpacing;
/// How many thumbnails stand ready on either side of those on screen.
constexpr int spareThumbnails = 2;
/// How long a worker looks on for a photo among texts that are none, before it asks whether that is still wanted.
constexpr std::chrono::milliseconds maxSurveyTime{50};

} // namespace

PhotoStrip::PhotoStrip(QWidget *parent) : QAbstractScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false); // what is behind shows through
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Photos"));
    horizontalScrollBar()->setSingleStep(step);
    enableKeyboardScrolling(*this);
}

void PhotoStrip::setPhotos(const QString &personId, const QString &personName, const QList<PhotoText> &photos)
{
    const bool isSamePerson = std::exchange(m_personId, personId) == personId;
    if (isSamePerson && m_photos.isSharedWith(photos) && m_personName == personName)
        return;
    m_personName = personName;
    m_photos = photos;
    m_survey.reset();
    std::erase_if(m_broken, [&](const BrokenPhoto &photo) { return !isSamePerson || photo.position >= photos.size(); });
    if (!m_broken.empty())
        survey(photos.size()); // some may be photos now
    if (!isSamePerson)
        horizontalScrollBar()->setValue(0);
    updateRange();
    showThumbnails();
}

qsizetype PhotoStrip::positionAt(int slot) const
{
    // Broken photo number n stands behind position - n others; those up to the slot are passed over.
    qsizetype low = 0;
    auto high = qsizetype(m_broken.size());
    while (low < high) {
        const qsizetype middle = (low + high) / 2;
        if (m_broken[std::size_t(middle)].position - middle <= slot)
            low = middle + 1;
        else
            high = middle;
    }
    return slot + low;
}

void PhotoStrip::updateRange()
{
    const qint64 width = std::max<qint64>(0, qint64(slotCount()) * step - theme::thumbnailSpacing);
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0, int(std::clamp<qint64>(width - viewport()->width(), 0, QWIDGETSIZE_MAX * 64LL)));
}

void PhotoStrip::addThumbnail()
{
    auto *const frame = new PhotoFrame({}, viewport());
    frame->setFixedSize(theme::thumbnailSize);
    m_thumbnails.push_back({frame});
    connect(frame, &PhotoFrame::contentChanged, this, [this, frame] {
        const auto shown = std::find_if(m_thumbnails.begin(), m_thumbnails.end(),
                                        [frame](const Thumbnail &candidate) { return candidate.frame == frame; });
        frame->setVisible(!frame->isLocked() && shown->position >= 0);
        surveyWhatIsLocked();
    });
}

/// The thumbnail that shows this photo, or one that shows none between the two others.
PhotoStrip::Thumbnail &PhotoStrip::thumbnailFor(qsizetype position, qsizetype firstPosition, qsizetype lastPosition)
{
    const auto isShowing = [position](const Thumbnail &candidate) { return candidate.position == position; };
    const auto isFree = [=](const Thumbnail &candidate) {
        return candidate.position < firstPosition || candidate.position > lastPosition;
    };
    auto found = std::find_if(m_thumbnails.begin(), m_thumbnails.end(), isShowing);
    if (found == m_thumbnails.end())
        found = std::find_if(m_thumbnails.begin(), m_thumbnails.end(), isFree);
    if (found == m_thumbnails.end()) {
        addThumbnail();
        return m_thumbnails.back();
    }
    return *found;
}

void PhotoStrip::showThumbnails()
{
    const int offset = horizontalScrollBar()->value();
    const int first = std::max(0, offset / step - spareThumbnails);
    const int last = std::min(slotCount() - 1, (offset + viewport()->width()) / step + spareThumbnails);
    const qsizetype firstPosition = positionAt(first);
    const qsizetype lastPosition = last < first ? firstPosition - 1 : positionAt(last);
    const QString total = QString::number(slotCount());
    for (Thumbnail &thumbnail : m_thumbnails) {
        const bool isBroken = std::any_of(m_broken.begin(), m_broken.end(), [&thumbnail](const BrokenPhoto &photo) {
            return photo.position == thumbnail.position;
        });
        if (isBroken)
            thumbnail.position = -1;
    }
    for (int slot = first; slot <= last; ++slot) {
        const qsizetype position = positionAt(slot);
        Thumbnail &thumbnail = thumbnailFor(position, firstPosition, lastPosition);
        thumbnail.position = position;
        const QRect place(QPoint(slot * step - offset, 0), theme::thumbnailSize);
        thumbnail.frame->move(QStyle::visualRect(layoutDirection(), viewport()->rect(), place).topLeft());
        thumbnail.frame->setPhoto(m_personId + QChar::Null + QString::number(position),
                                  QStringLiteral("Photo ") + QString::number(slot + 1) + QStringLiteral(" of ") +
                                      total + QStringLiteral(" of ") + isolated(m_personName),
                                  m_photos[position]);
        thumbnail.frame->setVisible(!thumbnail.frame->isLocked());
    }
    for (Thumbnail &thumbnail : m_thumbnails) {
        if (thumbnail.position >= firstPosition && thumbnail.position <= lastPosition)
            continue;
        thumbnail.position = -1;
        thumbnail.frame->setPhoto({}, {}, std::nullopt); // keeps no reply alive
        thumbnail.frame->hide();
    }
}

void PhotoStrip::surveyWhatIsLocked()
{
    if (m_survey)
        return; // and once more when that has ended
    qsizetype from = m_photos.size();
    for (const Thumbnail &thumbnail : m_thumbnails) {
        if (thumbnail.position >= 0 && thumbnail.frame->isLocked() && !thumbnail.frame->isWaiting())
            from = std::min(from, thumbnail.position);
    }
    if (from < m_photos.size())
        survey(from);
}

void PhotoStrip::survey(qsizetype from)
{
    const auto survey = std::make_shared<const int>();
    m_survey = survey;
    const QSize frame = (QSizeF(theme::thumbnailSize) * devicePixelRatioF()).toSize();
    const bool isStarted =
        startOnWorker([strip = QPointer(this), home = CallQueue::ofThisThread(), wanted = std::weak_ptr(survey),
                       photos = m_photos, known = m_broken, from, frame] {
            const auto isWanted = [wanted] { return !wanted.expired(); };
            home->post([strip, wanted,
                        broken = brokenPhotos(photos, known, from, frame,
                                              {.maxProcessorTime = maxSurveyTime, .isWanted = isWanted})]() mutable {
                if (!strip || wanted.expired())
                    return;
                strip->m_survey.reset();
                strip->m_broken = std::move(broken);
                strip->updateRange();
                strip->showThumbnails();
                strip->surveyWhatIsLocked();
            });
        });
    if (!isStarted)
        m_survey.reset(); // the next photo that turns out to be none tries again
}

void PhotoStrip::resizeEvent(QResizeEvent *)
{
    updateRange();
    showThumbnails();
}

void PhotoStrip::scrollContentsBy(int, int)
{
    showThumbnails();
}

void PhotoStrip::wheelEvent(QWheelEvent *event)
{
    constexpr double notch = 120;
    const bool isSideways = std::abs(event->angleDelta().x()) > std::abs(event->angleDelta().y());
    const int turn = isSideways ? event->angleDelta().x() : event->angleDelta().y();
    QScrollBar &bar = *horizontalScrollBar();
    const bool isAtEnd = bar.value() == (turn > 0 ? bar.minimum() : bar.maximum());
    if (turn == 0 || isAtEnd) {
        m_wheelRest = 0;
        event->ignore(); // the profile scrolls on
        return;
    }
    m_wheelRest -= turn * step / notch;
    const int pixels = int(m_wheelRest);
    m_wheelRest -= pixels;
    bar.setValue(bar.value() + pixels);
    event->accept();
}

void PhotoStrip::keyPressEvent(QKeyEvent *event)
{
    QScrollBar &bar = *horizontalScrollBar();
    if (event->key() == Qt::Key_Home)
        bar.setValue(bar.minimum());
    else if (event->key() == Qt::Key_End)
        bar.setValue(bar.maximum());
    else
        QAbstractScrollArea::keyPressEvent(event);
}

QSize PhotoStrip::sizeHint() const
{
    return {theme::thumbnailSize.width(),
            theme::thumbnailSize.height() + theme::thumbnailSpacing + horizontalScrollBar()->sizeHint().height()};
}

} // namespace ambrel
