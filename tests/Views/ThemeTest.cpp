#include "Views/ViewsFixture.h"

#include <QColor>

#include <algorithm>
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
    {"GrayOnACard", "gray", "card", 3},
    {"TealOnACard", "teal", "card", 3},
    {"RedOnACard", "red", "card", 3},
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
