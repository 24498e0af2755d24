#include "ui/MatchPhoto.h"

#include "ui/Theme.h"

namespace ambrel {

MatchPhoto::MatchPhoto(QWidget *parent) : PhotoFrame({.symbolSize = theme::cardPhotoSymbolSize, .words = {}}, parent)
{
    setFixedSize(theme::cardPhotoSize);
}

} // namespace ambrel
