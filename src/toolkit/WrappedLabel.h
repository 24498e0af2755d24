#pragma once

#include "toolkit/TextLabel.h"

namespace ambrel {

/// A label that wraps its text at any width, long words included, and is as high as that takes. Line breaks in the
/// text are kept. Shows the first 2000 characters and "…" unless it is told to show everything. Main thread only.
class WrappedLabel : public TextLabel
{
    Q_OBJECT

public:
    explicit WrappedLabel(const QString &text = {}, QWidget *parent = nullptr);

    /// Shows the text whole, however long it is; the work then grows linearly with the text.
    void setShowsEverything(bool everything);

protected:
    TextLines breakLines(int width) const override;

private:
    bool m_showsEverything = false;
};

} // namespace ambrel
