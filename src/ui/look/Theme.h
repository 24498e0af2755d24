#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QSize>

/// Every colour, length and font of the user interface. Lengths are device-independent pixels.
namespace ambrel::theme {

// Brand colours

inline const QColor ambrelRed = QColor::fromRgbF(0.784F, 0.247F, 0.196F);
inline const QColor ambrelCream = QColor::fromRgbF(1.0F, 0.973F, 0.953F);

// Background gradient, from the top left to the bottom right corner

inline const QColor backgroundStart = QColor::fromRgbF(1.0F, 0.95F, 0.9F);
inline const QColor backgroundMiddle = QColor::fromRgbF(0.98F, 0.86F, 0.76F);
inline const QColor backgroundEnd = QColor::fromRgbF(0.95F, 0.4F, 0.3F);

// Text. Both keep 4.5:1 on the bare peach of the gradient and on each material over its coral end.

inline const QColor primaryText = QColor::fromRgbF(0.16F, 0.09F, 0.07F);
inline const QColor secondaryText = QColor::fromRgbF(0.35F, 0.26F, 0.235F);
inline const QColor placeholderText = QColor::fromRgbF(0.47F, 0.40F, 0.38F);

// Translucent materials that cards lie on

inline const QColor regularMaterial = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.62F);
inline const QColor ultraThinMaterial = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.42F);

// Buttons

inline const QColor primaryButton = ambrelRed;
inline const QColor primaryButtonPressed = QColor::fromRgbF(0.784F, 0.247F, 0.196F, 0.78F);
inline const QColor primaryButtonLabel = Qt::white;
inline const QColor secondaryButton = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.74F);
inline const QColor secondaryButtonPressed = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.55F);
inline const QColor secondaryButtonLabel = QColor::fromRgbF(0.52F, 0.1F, 0.06F);
inline const QColor buttonHoverVeil = QColor::fromRgbF(0.0F, 0.0F, 0.0F, 0.05F);

// Controls

inline const QColor controlAccent = ambrelRed;
inline const QColor focusRing = secondaryButtonLabel;
inline const QColor focusRingOnRed = Qt::white;
inline const QColor fieldBackground = Qt::white;
inline const QColor fieldBorder = QColor::fromRgbF(0.0F, 0.0F, 0.0F, 0.2F);
inline const QColor fieldBorderHovered = QColor::fromRgbF(0.0F, 0.0F, 0.0F, 0.36F);
inline const QColor editorOutline = QColor::fromRgbF(0.0F, 0.0F, 0.0F, 0.15F);
inline const QColor groupBoxFill = QColor::fromRgbF(0.72F, 0.38F, 0.24F, 0.09F);
inline const QColor groupBoxBorder = QColor::fromRgbF(0.45F, 0.2F, 0.12F, 0.12F);
inline const QColor quietSelection = QColor(236, 214, 200); ///< of text in a field without the focus
inline const QColor popupFill = ambrelCream;                ///< of menus and tooltips
inline const QColor popupBorder = QColor(214, 196, 184);
inline const QColor divider = QColor::fromRgbF(0.55F, 0.36F, 0.29F, 0.35F);
inline const QColor scrollBarHandle = QColor::fromRgbF(0.35F, 0.26F, 0.235F, 0.4F);
inline const QColor scrollBarHandleHovered = QColor::fromRgbF(0.35F, 0.26F, 0.235F, 0.7F);

// Window edge, switch and window controls

inline const QColor windowEdge = QColor::fromRgbF(0.35F, 0.16F, 0.1F, 0.35F);
inline const QColor switchOff = QColor::fromRgbF(0.35F, 0.26F, 0.235F, 0.55F);
inline const QColor switchKnob = Qt::white;
inline const QColor windowControlGlyph = secondaryText;
inline const QColor windowControlHovered = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.5F);
inline const QColor windowControlPressed = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.8F);
inline const QColor closeControlGlyph = Qt::white;
inline const QColor closeControlHovered = ambrelRed;
inline const QColor closeControlPressed = secondaryButtonLabel;

// Live pill, cards, photos, brand mark, alert

inline const QColor pausedPill = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.62F);
inline const QColor livePill = ambrelRed;
inline const QColor cardHovered = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.8F);
inline const QColor selectedCardOutline = ambrelRed;
inline const QColor photoFrame = QColor::fromRgbF(0.0F, 0.0F, 0.0F, 0.08F);
inline const QColor logoRing = QColor::fromRgbF(1.0F, 0.84F, 0.79F);
inline const QColor logoRingInverted = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.95F);
inline const QColor logoShadow = QColor::fromRgbF(0.0F, 0.0F, 0.0F, 0.13F);
inline const QColor alertBackdrop = QColor::fromRgbF(0.16F, 0.09F, 0.07F, 0.38F);
inline const QColor alertSurface = ambrelCream;

// Window and columns

inline constexpr QSize windowMinimumSize{980, 680};
inline constexpr QSize windowComfortableSize{1280, 900};
inline constexpr int windowPadding = 18;
inline constexpr int sidebarWidth = 340;
inline constexpr int windowRadius = 10;
inline constexpr int windowControlsMargin = 4;
inline constexpr int dividerThickness = 1;
inline constexpr int mainPanelPadding = 18;
inline constexpr int mainPanelSpacing = 18;
inline constexpr int matchColumnMinimumWidth = 360;
inline constexpr int matchColumnSpacing = 14;
inline constexpr int profilePanelWidth = 330;

// Cards

inline constexpr qreal cornerRadius = 8;
inline constexpr int panelPadding = 18;
inline constexpr qreal hairline = 1;

// Buttons and controls

inline constexpr int buttonMinimumHeight = 40;
inline constexpr int buttonRowSpacing = 8;
inline constexpr int buttonLabelMargin = 10;
inline constexpr qreal buttonLabelMinimumScale = 0.78;
inline constexpr qreal focusRingWidth = 2;
inline constexpr qreal focusRingInset = 2;
inline constexpr int fieldHeight = 28;
inline constexpr int fieldTextMargin = 7;
inline constexpr qreal fieldRadius = 6;
inline constexpr int menuPadding = 4;
inline constexpr QSize menuItemPadding{12, 4};
inline constexpr int toolTipPadding = 6;
inline constexpr int scrollBarThickness = 10;
inline constexpr int scrollBarHandleMinimum = 28;
inline constexpr int edgeFadeHeight = 12;
inline constexpr int transientScrollBarThickness = 8;
inline constexpr std::chrono::milliseconds scrollBarLinger{800};

// Sidebar

inline constexpr int sidebarPadding = 18;
inline constexpr int sidebarSpacing = 16;
inline constexpr int sidebarHeaderSpacing = 12;
inline constexpr int sidebarTitleSpacing = 2;
inline constexpr int sidebarLogoSize = 52;
inline constexpr int maxStatusLineHeight = 120;
inline constexpr int formSpacing = 10;
inline constexpr int formTopPadding = 4;
inline constexpr int groupBoxPadding = 8;
inline constexpr int groupTitleSpacing = 4;
inline constexpr int bioEditorHeight = 72;
inline constexpr qreal bioEditorTextMargin = 8;

// Main panel: header, pill, meter, cards

inline constexpr int headerTextSpacing = 4;
inline constexpr int headerSpacing = 8;
inline constexpr int pillHorizontalPadding = 12;
inline constexpr int pillVerticalPadding = 7;
inline constexpr int meterLogoSize = 82;
inline constexpr int meterSpacing = 10;
inline constexpr int maxMeterLines = 6; ///< of a very long name
inline constexpr int cardListSpacing = 12;
inline constexpr int cardListPadding = 2;
inline constexpr int cardPadding = 12;
inline constexpr qreal selectedCardOutlineWidth = 2;
inline constexpr int cardSpacing = 10;
inline constexpr int cardPhotoSpacing = 12;
inline constexpr int cardTextSpacing = 4;
inline constexpr int maxCardBioLines = 2;
inline constexpr QSize cardPhotoSize{86, 104};
inline constexpr int cardPhotoSymbolSize = 44;

// Profile panel

inline constexpr int profileSpacing = 14;
inline constexpr int largePhotoHeight = 250;
inline constexpr int largePhotoSymbolSize = 68;
inline constexpr int largePhotoSymbolSpacing = 8;
inline constexpr std::chrono::milliseconds photoFadeDuration{120};
inline constexpr QSize thumbnailSize{74, 90};
inline constexpr int thumbnailSpacing = 8;
inline constexpr int noSelectionLogoSize = 94;
inline constexpr int noSelectionSpacing = 10;

// Brand mark, as fractions of its size; the shadow in pixels

inline constexpr qreal logoStrokeWidth = 0.055;
inline constexpr qreal logoStrokeInset = 0.04;
inline constexpr qreal logoHeartSize = 0.56;
inline constexpr QSizeF logoPinSize{0.24, 0.28};
inline constexpr qreal logoPinLift = 0.045;
inline constexpr qreal logoDotDiameter = 0.07;
inline constexpr qreal logoDotLift = 0.08;
inline constexpr qreal logoShadowBlur = 14;
inline constexpr qreal logoShadowOffset = 7;

// See Me flash and alert

inline constexpr int flashLogoSize = 160;
inline constexpr int flashSpacing = 16;
inline constexpr int alertWidth = 320;
inline constexpr int alertPadding = 20;
inline constexpr qreal alertRadius = 12;
inline constexpr int alertSpacing = 12;

/// The type scale. Titles come in the weight in which they are used everywhere.
enum class TextStyle {
    LargeTitle,
    Title,
    Title2,
    Headline,
    Body,
    Footnote,
    Caption,
    CaptionBold,
    Caption2,
    Wordmark,  ///< "Ambrel" in the sidebar
    FlashTitle ///< "SEE ME" on the flash
};

/// How much larger the desktop's texts are than they come; 1 at least. Texts, and the lengths that make room for them,
/// grow by it. Main thread, after the application object exists.
qreal textScale();
inline int scaled(int length)
{
    return qRound(length * textScale());
}

/// The font of a text style, in the desktop's own family where that has true heavy weights. Main thread, after the
/// application object exists.
QFont font(TextStyle style);

/// The light palette of every control, complete in all roles and groups, whatever the desktop's colours are. What is
/// disabled looks as it does otherwise.
QPalette palette();
/// The same with entries that can't be chosen greyed.
QPalette menuPalette();

} // namespace ambrel::theme
