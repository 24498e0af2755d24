#include "ui/look/Theme.h"

#include "toolkit/ColorEmoji.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <algorithm>
#include <array>
#include <utility>

namespace ambrel::theme {

namespace {

struct TypeSize
{
    TextStyle style;
    int pixelSize;
    QFont::Weight weight;
};

constexpr std::array typeScale{
    TypeSize{TextStyle::LargeTitle, 28, QFont::Bold},  TypeSize{TextStyle::Title, 22, QFont::Bold},
    TypeSize{TextStyle::Title2, 18, QFont::Bold},      TypeSize{TextStyle::Headline, 14, QFont::DemiBold},
    TypeSize{TextStyle::Body, 14, QFont::Normal},      TypeSize{TextStyle::Footnote, 12, QFont::Normal},
    TypeSize{TextStyle::Caption, 12, QFont::Normal},   TypeSize{TextStyle::CaptionBold, 12, QFont::Bold},
    TypeSize{TextStyle::Caption2, 11, QFont::Normal},  TypeSize{TextStyle::Wordmark, 30, QFont::Black},
    TypeSize{TextStyle::FlashTitle, 52, QFont::Black},
};

bool hasHeavyWeights(const QString &family)
{
    const QStringList styles = QFontDatabase::styles(family);
    return std::any_of(styles.begin(), styles.end(), [&family](const QString &style) {
        return QFontDatabase::weight(family, style) >= QFont::ExtraBold;
    });
}

/// The desktop's family, or one that can draw the wordmark truly black. A generic name ("Sans Serif") has no weights of
/// its own; to ask which family stands behind it would load a font that is not shown, unless it is the last resort: a
/// generic name that is not the only one of a list is passed over by Qt.
QString chooseFamily()
{
    for (const QString &family :
         {QApplication::font().family(), QStringLiteral("Inter"), QStringLiteral("Noto Sans")}) {
        if (hasHeavyWeights(family))
            return family;
    }
    return QFontInfo(QApplication::font()).family();
}

} // namespace

/// A size in points is what the user has chosen; larger screen resolutions scale the whole window instead.
qreal textScale()
{
    constexpr qreal largestDefault = 11; // no desktop's own size is larger
    constexpr qreal largest = 3;
    static const qreal scale = std::clamp(QApplication::font().pointSizeF() / largestDefault, 1.0, largest);
    return scale;
}

QFont font(TextStyle style)
{
    static const QString family = chooseFamily();
    const auto *const entry = std::find_if(typeScale.begin(), typeScale.end(),
                                           [style](const TypeSize &candidate) { return candidate.style == style; });
    QFont font = QApplication::font();
    font.setFamilies({family, emojiFamily()}); // or some emoji come in black and white
    font.setStyleName(QString());              // a desktop's style name would win over the weight
    font.setItalic(false);
    font.setPixelSize(scaled(entry->pixelSize));
    font.setWeight(entry->weight);
    return font;
}

QPalette palette()
{
    const QColor window = QColor(252, 240, 229);
    const std::pair<QPalette::ColorRole, QColor> roles[] = {
        {QPalette::Window, window},
        {QPalette::WindowText, primaryText},
        {QPalette::Base, fieldBackground},
        {QPalette::AlternateBase, ambrelCream},
        {QPalette::Text, primaryText},
        {QPalette::PlaceholderText, placeholderText},
        {QPalette::Button, ambrelCream},
        {QPalette::ButtonText, primaryText},
        {QPalette::BrightText, Qt::white},
        {QPalette::ToolTipBase, ambrelCream},
        {QPalette::ToolTipText, primaryText},
        {QPalette::Highlight, ambrelRed},
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
        {QPalette::Accent, ambrelRed}, // else the desktop's shows through
#endif
        {QPalette::HighlightedText, Qt::white},
        {QPalette::Link, secondaryButtonLabel},
        {QPalette::LinkVisited, secondaryButtonLabel},
        {QPalette::Light, Qt::white},
        {QPalette::Midlight, ambrelCream},
        {QPalette::Mid, popupBorder},
        {QPalette::Dark, QColor(176, 156, 145)},
        {QPalette::Shadow, QColor(96, 78, 70)},
    };
    QPalette palette;
    for (const auto &[role, color] : roles) {
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            palette.setColor(group, role, color);
    }
    for (const auto group : {QPalette::Inactive, QPalette::Disabled}) {
        palette.setColor(group, QPalette::Highlight, quietSelection);
        palette.setColor(group, QPalette::HighlightedText, primaryText);
    }
    return palette;
}

QPalette menuPalette()
{
    QPalette colors = palette();
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colors.setColor(QPalette::Disabled, role, placeholderText);
    return colors;
}

} // namespace ambrel::theme
