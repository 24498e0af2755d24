#pragma once

#include "model/PhotoText.h"
#include "ui/profile/PhotoSurvey.h"

#include <QAbstractScrollArea>
#include <QList>
#include <memory>
#include <vector>

namespace ambrel {

class PhotoFrame;

/// A sideways scrolling row of thumbnails, with widgets only for those on screen and beside it, however many there are.
/// A photo that turns out to be none leaves no thumbnail and no gap; photos that were never on screen count as photos.
/// The wheel scrolls the row, and what is around it once the row has come to its end. Needs a view environment.
class PhotoStrip : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit PhotoStrip(QWidget *parent = nullptr);

    /// Shows these photos of a person, in order. A thumbnail stays as it is where its photo does.
    void setPhotos(const QString &personId, const QString &personName, const QList<PhotoText> &photos);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Thumbnail
    {
        PhotoFrame *frame;
        qsizetype position = -1; ///< in the list of photos
    };

    int slotCount() const { return int(m_photos.size() - qsizetype(m_broken.size())); }
    qsizetype positionAt(int slot) const;
    void updateRange();
    void showThumbnails();
    Thumbnail &thumbnailFor(qsizetype position, qsizetype firstPosition, qsizetype lastPosition);
    void addThumbnail();
    void surveyWhatIsLocked();
    void survey(qsizetype from);

    QString m_personId;
    QString m_personName;
    QList<PhotoText> m_photos;
    std::vector<BrokenPhoto> m_broken; ///< by position
    std::vector<Thumbnail> m_thumbnails;
    std::shared_ptr<const int> m_survey; ///< there while one goes on; dropping it calls it off
    double m_wheelRest = 0;              ///< pixels that the wheel was turned, but not yet scrolled
};

} // namespace ambrel
