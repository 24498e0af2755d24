#pragma once

#include "ui/profile/PhotoFrame.h"

namespace ambrel {

/// The small photo on a match card.
class MatchPhoto : public PhotoFrame
{
    Q_OBJECT

public:
    explicit MatchPhoto(QWidget *parent = nullptr);
};

} // namespace ambrel
