#include "ui/profile/MatchPhoto.h"

#include "ui/look/Theme.h"

namespace ambrel {

MatchPhoto::MatchPhoto(QWidget *parent) : PhotoFrame({.symbolSize = theme::cardPhotoSymbolSize, .words = {}}, parent)
{
    setFixedSize(theme::cardPhotoSize);
}

} // namespace ambrel
