#include "ui/look/Theme.h"
#include "ui/Contrast.h"
#include "ui/Pixels.h"

#include <QApplication>
#include <QFontInfo>
#include <QTest>

using namespace ambrel;
using theme::TextStyle;

class ThemeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bodyTextIsReadableOnEveryMaterialOverEveryStopOfTheGradient()
    {
        for (const QColor &stop : {theme::backgroundStart, theme::backgroundMiddle, theme::backgroundEnd}) {
            for (const QColor &material : {theme::regularMaterial, theme::ultraThinMaterial}) {
                QVERIFY(contrast(theme::primaryText, over(material, stop)) >= 4.5);
                QVERIFY(contrast(theme::secondaryText, over(material, stop)) >= 4.5);
            }
        }
        QVERIFY(contrast(theme::secondaryText, theme::backgroundMiddle) >= 4.5);
        QVERIFY(contrast(theme::placeholderText, theme::fieldBackground) >= 4.5);
        QVERIFY(contrast(theme::ambrelRed, theme::backgroundMiddle) >= 3.0); // the large title
    }

    void buttonLabelsAreReadableAtRest()
    {
        QVERIFY(contrast(theme::primaryButtonLabel, theme::primaryButton) >= 4.5);
        for (const QColor &stop : {theme::backgroundStart, theme::backgroundEnd}) {
            const QColor card = over(theme::regularMaterial, stop);
            QVERIFY(contrast(theme::secondaryButtonLabel, over(theme::secondaryButton, card)) >= 4.5);
        }
    }

    void fixedColorsThatFallShortAreKnown()
    {
        // These colours are given, so they stay; what they lack of 4.5:1 (3:1 for large text) is on record here.
        const QColor card = over(theme::regularMaterial, theme::backgroundEnd);
        const double pressedLabel = contrast(theme::primaryButtonLabel, over(theme::primaryButtonPressed, card));
        QVERIFY(pressedLabel > 3.3 && pressedLabel < 4.5); // only while the button is held down
        const double title = contrast(theme::ambrelRed, theme::backgroundMiddle);
        QVERIFY(title >= 3.0); // large, and never far beyond the middle of the gradient
        QVERIFY(contrast(theme::ambrelRed, theme::backgroundEnd) < 3.0);
    }

    void paletteIsLightInEveryRoleAndGroup()
    {
        const QPalette palette = theme::palette();
        const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
            {QPalette::WindowText, QPalette::Window},         {QPalette::Text, QPalette::Base},
            {QPalette::Text, QPalette::AlternateBase},        {QPalette::PlaceholderText, QPalette::Base},
            {QPalette::ButtonText, QPalette::Button},         {QPalette::ToolTipText, QPalette::ToolTipBase},
            {QPalette::HighlightedText, QPalette::Highlight}, {QPalette::Link, QPalette::Window},
        };
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const auto &[text, background] : pairs)
                QVERIFY2(contrast(palette.color(group, text), palette.color(group, background)) >= 4.5,
                         qPrintable(QStringLiteral("role %1, group %2").arg(text).arg(group)));
            for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::ToolTipBase})
                QVERIFY(luminance(palette.color(group, role)) > 0.8);
            for (int role = 0; role < QPalette::NColorRoles; ++role) {
                if (role != QPalette::NoRole)
                    QVERIFY(palette.isBrushSet(group, QPalette::ColorRole(role)));
            }
        }
    }

    void heavyStylesAreTrulyHeavy()
    {
        for (const auto style : {TextStyle::Wordmark, TextStyle::FlashTitle}) {
            const QFontInfo info(theme::font(style));
            QVERIFY(info.weight() >= QFont::ExtraBold);
        }
        QCOMPARE(theme::font(TextStyle::Wordmark).pixelSize(), 30);
        QCOMPARE(theme::font(TextStyle::FlashTitle).pixelSize(), 52);
    }
};

QTEST_MAIN(ThemeTest)
#include "ThemeTest.moc"
