#pragma once

#include "model/PhotoText.h"

#include <QList>
#include <QScrollArea>

class QHBoxLayout;

namespace ambrel {

class PhotoFrame;

/// A sideways scrolling row of thumbnails. A photo that turns out to be none leaves no thumbnail and no gap. Needs a
/// view environment.
class PhotoStrip : public QScrollArea
{
    Q_OBJECT

public:
    explicit PhotoStrip(QWidget *parent = nullptr);

    /// Shows these photos of a person, in order. A thumbnail stays as it is where its photo does.
    void setPhotos(const QString &personId, const QString &personName, const QList<PhotoText> &photos);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    QHBoxLayout *const m_row;
    QList<PhotoFrame *> m_thumbnails;
};

} // namespace ambrel
