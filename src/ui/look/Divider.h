#pragma once

#include <QWidget>

namespace ambrel {

/// A faint line between two areas.
class Divider : public QWidget
{
    Q_OBJECT

public:
    explicit Divider(Qt::Orientation orientation, QWidget *parent = nullptr);
};

} // namespace ambrel
