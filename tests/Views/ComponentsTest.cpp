#include "ViewModels/DashboardViewModel.h"
#include "Views/ViewsFixture.h"

#include <QTest>

using namespace Quillmere;

class ComponentsTest : public ViewsFixture
{
};

struct RiskCase
{
    const char *name;
    const char *symbol;
    const char *key;
    const char *color;
};

class RiskBadgeTest : public ViewsFixture, public testing::WithParamInterface<RiskCase>
{
};

TEST_P(RiskBadgeTest, DerivesItsLooksFromTheLevel)
{
    show(QByteArray("RiskBadge { objectName: 'badge'; riskLevel: RiskLevel.") + GetParam().name + " }");

    const QQuickItem *badge = item(u"badge"_qs);
    EXPECT_EQ(badge->property("symbolName").toString(), QLatin1String(GetParam().symbol));
    EXPECT_EQ(badge->property("label").toString(), m_localizer.localized(QLatin1String(GetParam().key)));
    const auto level = theme(GetParam().color).value<QColor>();
    const auto ground = badge->property("color").value<QColor>();
    EXPECT_EQ(badge->property("levelColor").value<QColor>(), level);
    EXPECT_EQ(ground.rgb(), level.rgb());
    EXPECT_NEAR(ground.alphaF(), 0.15, 0.003);
}

INSTANTIATE_TEST_SUITE_P(Levels, RiskBadgeTest,
                         testing::Values(RiskCase{"Safe", "checkmark.shield", "common.safe", "greenText"},
                                         RiskCase{"Medium", "exclamationmark.triangle", "common.medium", "orangeText"},
                                         RiskCase{"High", "xmark.octagon", "common.high", "redText"},
                                         RiskCase{"Dangerous", "bolt.trianglebadge.exclamationmark", "common.dangerous",
                                                  "purpleText"}),
                         [](const auto &info) { return info.param.name; });

TEST_F(ComponentsTest, RiskBadgeShrinksItsWordTo78PercentBeforeItCutsIt)
{
    show("RiskBadge { id: whole; objectName: 'whole'; riskLevel: RiskLevel.Dangerous }\n"
         "RiskBadge { objectName: 'tight'; y: 40; riskLevel: RiskLevel.Dangerous; width: whole.implicitWidth - 10 }\n"
         "RiskBadge { objectName: 'tiny'; y: 80; riskLevel: RiskLevel.Dangerous; width: 50 }");
    const auto word = [this](const char *badge) { return item(QLatin1String(badge))->childItems().last(); };

    EXPECT_EQ(word("whole")->scale(), 1.0);
    EXPECT_LT(word("tight")->scale(), 1.0);
    EXPECT_GT(word("tight")->scale(), 0.78);
    EXPECT_FALSE(word("tight")->property("truncated").toBool());
    EXPECT_EQ(word("tiny")->scale(), 0.78);
    EXPECT_TRUE(word("tiny")->property("truncated").toBool());
}

TEST_F(ComponentsTest, RiskBadgeFollowsAChangeOfLanguage)
{
    show("RiskBadge { objectName: 'badge'; riskLevel: RiskLevel.Safe }");

    m_localizer.setLanguage(Language::Spanish);

    EXPECT_EQ(accessibleName(u"badge"_qs), m_localizer.localized(u"common.safe"_qs));
}

TEST_F(ComponentsTest, QuickActionCardIsNeverLowerThan80)
{
    show("QuickActionCard { objectName: 'card'; title: 'A'; symbol: 'globe' }");

    EXPECT_GE(item(u"card"_qs)->height(), 80);
}

TEST_F(ComponentsTest, QuickActionCardGrowsUnderThePointerAlone)
{
    m_appearance.setReducedMotion(false);
    show("QuickActionCard { objectName: 'card'; x: 40; y: 40; title: 'A'; symbol: 'globe' }");
    const QQuickItem *card = item(u"card"_qs);
    QTest::mouseMove(m_view.get(), QPoint(400, 400));
    EXPECT_EQ(card->scale(), 1.0);

    QTest::mouseMove(m_view.get(), middle(u"card"_qs));
    EXPECT_TRUE(QTest::qWaitFor([card] { return card->scale() == 1.02; }));

    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, middle(u"card"_qs));
    ASSERT_TRUE(card->property("down").toBool());
    EXPECT_FALSE(QTest::qWaitFor([card] { return card->scale() < 1.02; }, 200));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, middle(u"card"_qs));

    QTest::mouseMove(m_view.get(), QPoint(400, 400));
    EXPECT_TRUE(QTest::qWaitFor([card] { return card->scale() == 1.0; }));
}

TEST_F(ComponentsTest, CardViewShowsASymbolOnlyWhereItHasOne)
{
    show("CardView { objectName: 'plain'; width: 200; title: 'Plain' }\n"
         "CardView { objectName: 'marked'; y: 200; width: 200; title: 'Marked'; icon: 'globe' }");
    const auto showsSymbol = [this](const QString &card) {
        const QQuickItem *symbol = descendant("Symbol", item(card));
        return symbol && symbol->isVisible();
    };

    EXPECT_FALSE(showsSymbol(u"plain"_qs));
    EXPECT_TRUE(showsSymbol(u"marked"_qs));
}

TEST_F(ComponentsTest, CardViewHasASpinnerOnlyWhileSomethingGoesOn)
{
    show("CardView { objectName: 'card'; width: 200; title: 'Card'; icon: 'globe'; workingText: 'Turning' }");
    QQuickItem *card = item(u"card"_qs);
    EXPECT_EQ(descendant("Spinner", card), nullptr);

    card->setProperty("working", true);
    QQuickItem *spinner = descendant("Spinner", card);
    ASSERT_NE(spinner, nullptr);
    QAccessibleInterface *told = QAccessible::queryAccessibleInterface(spinner);
    EXPECT_EQ(told->role(), QAccessible::ProgressBar);
    EXPECT_EQ(told->text(QAccessible::Name), u"Turning"_qs);

    card->setProperty("working", false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return descendant("Spinner", card) == nullptr; }));
}

TEST_F(ComponentsTest, ProgressBarTellsAssistiveToolsWhatRuns)
{
    show("ProgressBar { objectName: 'copy'; value: 0.5; accessibleName: 'Copying' }");

    EXPECT_EQ(accessibleName(u"copy"_qs), u"Copying, 50%"_qs);
}

TEST_F(ComponentsTest, ProgressBarTellsAssistiveToolsItsPercentageWithinItsEnds)
{
    show("ProgressBar { objectName: 'half'; value: 0.5 }\nProgressBar { objectName: 'over'; value: 1.7 }");

    EXPECT_EQ(accessible(u"half"_qs)->role(), QAccessible::ProgressBar);
    EXPECT_EQ(accessibleName(u"half"_qs), u"50%"_qs);
    EXPECT_EQ(accessibleName(u"over"_qs), u"100%"_qs);
}

TEST_F(ComponentsTest, DiskBarWarmsWithItsLevel)
{
    show("DiskBar { objectName: 'bar' }");
    const auto colorsAt = [this](LoadLevel level) {
        item(u"bar"_qs)->setProperty("level", static_cast<int>(level));
        return std::pair(item(u"bar"_qs)->property("start").value<QColor>(),
                         item(u"bar"_qs)->property("end").value<QColor>());
    };
    const auto colors = [this](const char *start, const char *end) {
        return std::pair(theme(start).value<QColor>(), theme(end).value<QColor>());
    };

    EXPECT_EQ(colorsAt(LoadLevel::Normal), colors("diskStart", "diskEnd"));
    EXPECT_EQ(colorsAt(LoadLevel::Elevated), colors("orange", "yellow"));
    EXPECT_EQ(colorsAt(LoadLevel::High), colors("red", "orange"));
}

TEST_F(ComponentsTest, CategoryRowOpensByClickAndKeyboardAndIsSelectedByItsSwitchOnly)
{
    show("CategoryRow { objectName: 'row'; width: 640; name: 'Cache'; description: 'Old'; countText: '3 items'; "
         "sizeText: '1 MB'; onExpansionToggled: window.note('expansion'); "
         "onSelectionToggled: on => window.note('selection ' + on) }");

    click(u"row"_qs);
    EXPECT_EQ(log(), QStringList{u"expansion"_qs});

    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, QPoint(36, 37));
    EXPECT_EQ(log().last(), u"selection true"_qs);

    tab();
    press(Qt::Key_Space);
    EXPECT_EQ(log().size(), 3);
    EXPECT_EQ(accessibleName(u"row"_qs),
              u"Cache, Old, 3 items, 1 MB, %1"_qs.arg(m_localizer.localized(u"common.safe"_qs)));
}

TEST_F(ComponentsTest, CategoryRowShowsItsItemsOnlyWhenOpen)
{
    show("CategoryRow { objectName: 'row'; width: 640; name: 'Cache'; items: [{name: 'a', size: '1MB'}, {name: 'b', "
         "size: '2MB'}]; moreText: '3 more...' }");
    QQuickItem *row = item(u"row"_qs);
    EXPECT_EQ(row->implicitHeight(), 74);

    row->setProperty("expanded", true);

    EXPECT_TRUE(QTest::qWaitFor([row] { return row->implicitHeight() > 74 + 3 * 28; }));
}

TEST_F(ComponentsTest, CategoryRowOfAnInventoryCannotBeSelectedAndSaysSo)
{
    show("CategoryRow { objectName: 'row'; width: 640; name: 'Tools'; available: false; keepText: 'Installed only'; "
         "onSelectionToggled: window.note('selection') }");

    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, QPoint(36, 37));

    EXPECT_FALSE(log().contains(u"selection"_qs));
    EXPECT_TRUE(accessibleName(u"row"_qs).contains(u"Installed only"_qs));
}

TEST_F(ComponentsTest, EmptyStateBeginsByItsButton)
{
    show("EmptyState { objectName: 'empty'; anchors.fill: parent; symbol: 'search'; sentence: 'Nothing yet'; "
         "buttonText: 'Start'; onStarted: window.note('started') }");

    tab();
    press(Qt::Key_Return);

    EXPECT_EQ(log(), QStringList{u"started"_qs});
}

TEST_F(ComponentsTest, WindowButtonsAreNamedAndActOnTheWindow)
{
    show("WindowButtons { objectName: 'buttons' }");
    const auto buttons = item(u"buttons"_qs)->childItems();
    const auto nameOf
        = [](QQuickItem *button) { return QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name); };
    EXPECT_EQ(nameOf(buttons.at(0)), m_localizer.localized(u"control.minimize"_qs));
    EXPECT_EQ(nameOf(buttons.at(1)), m_localizer.localized(u"control.maximize"_qs));
    EXPECT_EQ(nameOf(buttons.at(2)), u"Close window"_qs);

    QAccessible::queryAccessibleInterface(buttons.at(1))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_view->visibility() == QWindow::Maximized; }));
    EXPECT_EQ(nameOf(buttons.at(1)), m_localizer.localized(u"control.restore"_qs));

    QAccessible::queryAccessibleInterface(buttons.at(2))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_view->isVisible(); }));
}

TEST_F(ComponentsTest, ScrollAreaIsScrolledByTheKeyboardWithinItsEnds)
{
    show("ScrollArea { objectName: 'area'; width: 200; height: 100; contentHeight: 1000; focus: true }");
    item(u"area"_qs)->forceActiveFocus();
    const auto position = [this] { return item(u"area"_qs)->property("contentY").toInt(); };

    press(Qt::Key_Down);
    EXPECT_EQ(position(), 40);
    press(Qt::Key_End);
    EXPECT_EQ(position(), 900);
    press(Qt::Key_PageDown);
    EXPECT_EQ(position(), 900);
    press(Qt::Key_Home);
    EXPECT_EQ(position(), 0);
}

TEST_F(ComponentsTest, ScrollAreaIsScrolledByTheKeyboardOverItsMarginsToo)
{
    show(
        "ScrollArea { objectName: 'area'; width: 200; height: 100; topMargin: 36; bottomMargin: 24; contentHeight: 90; "
        "focus: true }");
    item(u"area"_qs)->forceActiveFocus();
    const auto position = [this] { return item(u"area"_qs)->property("contentY").toInt(); };

    press(Qt::Key_End);
    EXPECT_EQ(position(), 14);
    press(Qt::Key_Home);
    EXPECT_EQ(position(), -36);
    press(Qt::Key_Down);
    EXPECT_EQ(position(), 4);
    press(Qt::Key_PageUp);
    EXPECT_EQ(position(), -36);
}

TEST_F(ComponentsTest, ElidingTextShowsAllOfItselfInATooltipOnlyWhenItIsCut)
{
    show("ElidingText { objectName: 'cut'; y: 40; width: 60; text: 'a name that is far too long' }");

    QTest::mouseMove(m_view.get(), QPoint(300, 300));
    QTest::mouseMove(m_view.get(), middle(u"cut"_qs));
    EXPECT_TRUE(QTest::qWaitFor([this] {
        const QObject *tip = item(u"cut"_qs)->childItems().constFirst()->property("tip").value<QObject *>();
        return tip && tip->property("visible").toBool();
    }));
    EXPECT_EQ(accessibleName(u"cut"_qs), u"a name that is far too long"_qs);
}

TEST_F(ComponentsTest, ConsoleOutputIsReadOnlyTextThatCanBeSelected)
{
    show("Console { objectName: 'console'; width: 400; height: 300; title: 'Console'; output: 'first line' }");

    press(Qt::Key_Tab);
    QAccessibleInterface *console = accessible(u"console"_qs);
    EXPECT_EQ(console->text(QAccessible::Name), u"Console"_qs);
}
