#include "ui/profile/LargeProfilePhoto.h"

#include "ui/look/Theme.h"

namespace ambrel {

LargeProfilePhoto::LargeProfilePhoto(QWidget *parent)
    : PhotoFrame({.symbolSize = theme::largePhotoSymbolSize, .words = QStringLiteral("Photo locked")}, parent)
{
    setFixedHeight(theme::largePhotoHeight);
}

} // namespace ambrel
