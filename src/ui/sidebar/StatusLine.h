#pragma once

#include <QScrollArea>

namespace ambrel {

class AnnouncedLabel;

/// The line at the foot of the sidebar that tells how things stand. As high as its text, up to a few lines; beyond them
/// it scrolls by itself, so that a long report leaves the forms their room. Main thread only.
class StatusLine : public QScrollArea
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent);

    /// Shows another text, from its first line.
    void setText(const QString &text);

protected:
    bool event(QEvent *event) override;

private:
    void fitText();

    AnnouncedLabel *m_text = nullptr;
};

} // namespace ambrel
