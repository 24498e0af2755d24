#pragma once

#include "ui/profile/PhotoFrame.h"

namespace ambrel {

/// The large photo at the top of the profile panel, as wide as its column.
class LargeProfilePhoto : public PhotoFrame
{
    Q_OBJECT

public:
    explicit LargeProfilePhoto(QWidget *parent = nullptr);
};

} // namespace ambrel
