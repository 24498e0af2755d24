#pragma once

#include "toolkit/WrappedLabel.h"

namespace ambrel {

/// A wrapped text that screen readers read out once whenever it changes, wherever the focus is. For assistive
/// technology the text stands in a notification: until Qt 6.8, which knows announcements, that is what Orca reads when
/// it is told that it shows. Main thread only.
class AnnouncedLabel : public QWidget
{
    Q_OBJECT

public:
    explicit AnnouncedLabel(QWidget *parent);

    /// The text itself, to be styled and described.
    WrappedLabel &label() const { return m_label; }
    /// Shows another text and announces it; does nothing if it is the same.
    void setText(const QString &text);

private:
    WrappedLabel &m_label;
};

} // namespace ambrel
