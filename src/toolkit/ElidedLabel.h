#pragma once

#include "toolkit/TextLabel.h"

namespace ambrel {

/// A label of at most so many lines whose text ends in "…" where it does not fit; a tooltip then shows more of it. Can
/// become almost as narrow as a letter. On one line, line breaks show as blanks; on several they are kept. Main thread
/// only.
class ElidedLabel : public TextLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(const QString &text = {}, QWidget *parent = nullptr);

    /// At least 1; 1 at first.
    void setMaximumLines(int lines);

protected:
    bool event(QEvent *event) override;
    TextLines breakLines(int width) const override;

private:
    int m_maximumLines = 1;
};

} // namespace ambrel
