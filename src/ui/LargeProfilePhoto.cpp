#include "ui/LargeProfilePhoto.h"

#include "ui/Theme.h"

namespace ambrel {

LargeProfilePhoto::LargeProfilePhoto(QWidget *parent)
    : PhotoFrame({.symbolSize = theme::largePhotoSymbolSize, .words = QStringLiteral("Photo locked")}, parent)
{
    setFixedHeight(theme::largePhotoHeight);
}

} // namespace ambrel
