#include "ui/profile/PhotoStrip.h"

#include "toolkit/ClearScrollArea.h"
#include "ui/look/KeyboardScrolling.h"
#include "ui/look/Theme.h"
#include "ui/profile/PhotoFrame.h"

#include <QHBoxLayout>
#include <QScrollBar>

namespace ambrel {

PhotoStrip::PhotoStrip(QWidget *parent) : QScrollArea(parent), m_row(new QHBoxLayout)
{
    auto *const content = new QWidget(this);
    content->setLayout(m_row);
    m_row->setContentsMargins({});
    m_row->setSpacing(theme::thumbnailSpacing);
    m_row->setSizeConstraint(QLayout::SetFixedSize);
    m_row->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    showThrough(*this, *content);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    enableKeyboardScrolling(*this);
}

void PhotoStrip::setPhotos(const QString &personId, const QString &personName, const QList<PhotoText> &photos)
{
    while (m_thumbnails.size() > photos.size())
        delete m_thumbnails.takeLast();
    while (m_thumbnails.size() < photos.size()) {
        auto *const thumbnail = new PhotoFrame({}, widget());
        thumbnail->setFixedSize(theme::thumbnailSize);
        connect(thumbnail, &PhotoFrame::contentChanged, thumbnail,
                [thumbnail] { thumbnail->setVisible(!thumbnail->isLocked()); });
        m_row->addWidget(thumbnail);
        m_thumbnails.append(thumbnail);
    }
    for (qsizetype index = 0; index < photos.size(); ++index)
        m_thumbnails[index]->setPhoto(personId, personName, photos[index]);
}

QSize PhotoStrip::sizeHint() const
{
    return {theme::thumbnailSize.width(),
            theme::thumbnailSize.height() + theme::thumbnailSpacing + horizontalScrollBar()->sizeHint().height()};
}

} // namespace ambrel
