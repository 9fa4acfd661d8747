#include "Views/ViewsFixture.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Quillmere;

namespace {

/// WCAG 2.1, relative luminance.
double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double lighter = std::max(luminance(one), luminance(other));
    const double darker = std::min(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

QColor over(const QColor &ground, const QColor &tint, float opacity)
{
    return QColor::fromRgbF(ground.redF() * (1 - opacity) + tint.redF() * opacity,
                            ground.greenF() * (1 - opacity) + tint.greenF() * opacity,
                            ground.blueF() * (1 - opacity) + tint.blueF() * opacity);
}

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

struct Sight
{
    const char *name;
    Matrix matrix;
};

// Machado, Oliveira and Fernandes, "A Physiologically-based Model for Simulation of Color Vision Deficiency" (2009), at
// full severity, for linear channels.
const Sight sights[] = {
    {"full", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
    {"without red",
     {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}}},
    {"without green",
     {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}}},
    {"without blue",
     {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}}},
};

double product(const Triple &row, const Triple &column)
{
    return row[0] * column[0] + row[1] * column[1] + row[2] * column[2];
}

/// CIE 1976, under D65.
Triple labOf(const QColor &color, const Sight &sight)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    const Triple full = {linear(color.redF()), linear(color.greenF()), linear(color.blueF())};
    Triple seen = {};
    for (size_t i = 0; i < 3; ++i)
        seen[i] = std::clamp(product(sight.matrix[i], full), 0.0, 1.0);
    const auto bent = [](double value) { return value > 0.008856 ? std::cbrt(value) : 7.787 * value + 16.0 / 116; };
    const double x = bent(product({0.4124, 0.3576, 0.1805}, seen) / 0.95047);
    const double y = bent(product({0.2126, 0.7152, 0.0722}, seen));
    const double z = bent(product({0.0193, 0.1192, 0.9505}, seen) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double distance(const QColor &one, const QColor &other, const Sight &sight)
{
    const Triple first = labOf(one, sight);
    const Triple second = labOf(other, sight);
    return std::hypot(first[0] - second[0], first[1] - second[1], first[2] - second[2]);
}

struct ContrastCase
{
    const char *name;
    const char *front;
    const char *ground;
    double atLeast;
};

const ContrastCase pairs[] = {
    {"TextOnTheSidebar", "text", "sidebarBottom", 4.5},
    {"TextOnACard", "text", "card", 4.5},
    {"TextOnATrack", "text", "track", 4.5},
    {"SecondaryTextOnTheSidebar", "textSecondary", "sidebarBottom", 4.5},
    {"SecondaryTextOnATrack", "textSecondary", "track", 4.5},
    {"TertiaryTextOnTheSidebar", "textTertiary", "sidebarBottom", 4.5},
    {"TertiaryTextOnATrack", "textTertiary", "track", 4.5},
    {"TertiaryTextOnAHoveredRow", "textTertiary", "hover", 4.5},
    {"AccentTextOnTheSidebar", "accent", "sidebarBottom", 4.5},
    {"AccentTextOnATrack", "accent", "track", 4.5},
    {"WhiteOnTheTopOfTheAccentFill", "fillText", "accentFillTop", 4.5},
    {"WhiteOnTheAccentFill", "fillText", "accentFill", 4.5},
    {"WhiteOnTheEndOfTheHeroFill", "fillText", "heroEnd", 4.5},
    {"WhiteOnTheTopOfTheDestructiveFill", "fillText", "destructiveTop", 4.5},
    {"WhiteOnTheFootOfThePromotion", "fillText", "promotionBottom", 4.5},
    {"TextOnAccentSoft", "accentSoftText", "accentSoft", 4.5},
    {"TheSelectedSidebarRow", "sidebarSelectionText", "sidebarSelection", 4.5},
    {"BannerHeading", "orangeText", "bannerGround", 4.5},
    {"BannerText", "text", "bannerGround", 4.5},
    {"TooltipText", "tooltipText", "tooltip", 4.5},
    {"ConsoleText", "consoleText", "consoleGround", 4.5},
    {"MutedConsoleText", "consoleMuted", "consoleGround", 4.5},
    {"BlueOnACard", "blue", "card", 3},
    {"GreenOnACard", "green", "card", 3},
    {"PurpleOnACard", "purple", "card", 3},
    {"OrangeOnACard", "orange", "card", 3},
    {"TealOnACard", "teal", "card", 3},
    {"RedOnACard", "red", "card", 3},
    {"BlueSliceOnACard", "sliceBlue", "card", 3},
    {"GreenSliceOnACard", "sliceGreen", "card", 3},
    {"PurpleSliceOnACard", "slicePurple", "card", 3},
    {"OrangeSliceOnACard", "sliceOrange", "card", 3},
    {"GraySliceOnACard", "sliceGray", "card", 3},
    {"TealSliceOnACard", "sliceTeal", "card", 3},
    {"FocusRingOnTheSidebar", "focusRing", "sidebarBottom", 3},
    {"FocusRingOnACard", "focusRing", "card", 3},
    {"SwitchOffOnACard", "switchOff", "card", 3},
    {"FieldBorderOnARaisedSurface", "fieldBorder", "raised", 3},
};

} // namespace

class ContrastTest : public ViewsFixture, public testing::WithParamInterface<ContrastCase>
{
};

TEST_P(ContrastTest, IsEnoughInBothThemes)
{
    show("Item {}");
    for (const bool dark : {false, true}) {
        m_appearance.setDark(dark);
        const auto front = theme(GetParam().front).value<QColor>();
        const auto ground = theme(GetParam().ground).value<QColor>();
        ASSERT_TRUE(front.isValid() && ground.isValid());
        EXPECT_GE(contrast(front, ground), GetParam().atLeast) << (dark ? "dark" : "light");
    }
}

INSTANTIATE_TEST_SUITE_P(Pairs, ContrastTest, testing::ValuesIn(pairs),
                         [](const auto &info) { return info.param.name; });

class ThemeTest : public ViewsFixture
{
};

TEST_F(ThemeTest, BadgeTextsReadOnTheirTintOverAHoveredRow)
{
    show("Item {}");
    for (const bool dark : {false, true}) {
        m_appearance.setDark(dark);
        for (const char *name : {"greenText", "orangeText", "redText", "purpleText"}) {
            const auto text = theme(name).value<QColor>();
            const QColor ground = over(theme("hover").value<QColor>(), text, 0.15f);
            EXPECT_GE(contrast(text, ground), 4.5) << name << (dark ? " dark" : " light");
        }
    }
}

TEST_F(ThemeTest, WindowButtonsAndTheirRingStandOutFromTheDimmedGroundsOfASheetTheWizardAndAnAlertOverASheet)
{
    show("Item {}");
    for (const bool dark : {false, true}) {
        m_appearance.setDark(dark);
        const auto dim = theme("dim").value<QColor>();
        const auto wizardDim = theme("wizardDim").value<QColor>();
        const QColor underASheet = over(theme("canvas").value<QColor>(), dim, dim.alphaF());
        const QColor underTheWizard = over(theme("canvas").value<QColor>(), wizardDim, wizardDim.alphaF());
        for (const QColor &ground : {underASheet, underTheWizard, over(underASheet, dim, dim.alphaF())}) {
            for (const char *name : {"dimmedSymbol", "dimmedFocusRing"})
                EXPECT_GE(contrast(theme(name).value<QColor>(), ground), 3)
                    << name << " on " << ground.name().toStdString() << (dark ? " dark" : " light");
        }
    }
}

TEST_F(ThemeTest, SlicesOfADiskStayApartForWhoeverSeesNoRedGreenOrBlue)
{
    show("Item {}");
    const std::array names = {"sliceBlue", "sliceGreen", "slicePurple", "sliceOrange", "sliceGray", "sliceTeal"};
    for (const bool dark : {false, true}) {
        m_appearance.setDark(dark);
        for (const Sight &sight : sights) {
            for (size_t i = 0; i + 1 < names.size(); ++i) {
                for (size_t j = i + 1; j < names.size(); ++j) {
                    const double seen
                        = distance(theme(names.at(i)).value<QColor>(), theme(names.at(j)).value<QColor>(), sight);
                    // Neighbours in the bar more than others.
                    EXPECT_GE(seen, j == i + 1 ? 16 : 9)
                        << names.at(i) << ' ' << names.at(j) << ' ' << sight.name << (dark ? " dark" : " light");
                }
            }
        }
    }
}

TEST_F(ThemeTest, FollowsTheAppearanceLive)
{
    show("Rectangle { objectName: 'ground'; color: Theme.canvas }");
    EXPECT_EQ(item(u"ground"_qs)->property("color").value<QColor>(), QColor(0xF3F6F7));

    m_appearance.setDark(true);

    EXPECT_EQ(item(u"ground"_qs)->property("color").value<QColor>(), QColor(0x0E181B));
}

TEST_F(ThemeTest, ReducedMotionLeavesFadesOfAtMost80MillisecondsAndNothingElse)
{
    show("Item {}");

    for (const char *name : {"colorDuration", "knobDuration", "expandDuration", "barDuration"})
        EXPECT_EQ(theme(name).toInt(), 0) << name;
    for (const char *name : {"sheetInDuration", "sheetOutDuration", "wizardDuration"})
        EXPECT_LE(theme(name).toInt(), 80) << name;

    m_appearance.setReducedMotion(false);
    EXPECT_EQ(theme("knobDuration").toInt(), 160);
    EXPECT_EQ(theme("sheetInDuration").toInt(), 220);
}

TEST_F(ThemeTest, LargeTextTakesTheDisplayFamily)
{
    show("TitleText { objectName: 'title'; text: 'x' }\nBodyText { objectName: 'body'; text: 'x' }");

    EXPECT_EQ(item(u"title"_qs)->property("font").value<QFont>().family(), m_appearance.displayFamily());
    EXPECT_EQ(item(u"body"_qs)->property("font").value<QFont>().family(), m_appearance.textFamily());
}
