#include "Platform/Linux/Tray/LinuxStatusItem.h"

#include "Platform/Linux/EventWaiting.h"
#include "Platform/Linux/Tray/LinuxStatusBar.h"
#include "Platform/Linux/Tray/PretendPanel.h"
#include "Platform/Linux/Tray/StatusItemIcon.h"

#include <QApplication>
#include <QMenu>
#include <QProcess>

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

MenuEntry line(const QString &title, const QString &symbol = {})
{
    MenuEntry entry;
    entry.title = title;
    entry.symbol = symbol;
    return entry;
}

MenuEntry separator()
{
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Separator;
    return entry;
}

} // namespace

class LinuxStatusItemTest : public testing::Test
{
protected:
    [[nodiscard]] QList<MenuEntry> entries()
    {
        MenuEntry keepAwake = line(u"Keep Awake (Prevent Sleep)"_qs, u"bolt.fill"_qs);
        keepAwake.isEnabled = true;
        keepAwake.isCheckable = true;
        keepAwake.isChecked = isAwake;
        keepAwake.action = [this] { clicked.append(u"awake"_qs); };
        MenuEntry quit = line(u"Quit & more"_qs, u"no such symbol"_qs);
        quit.isEnabled = true;
        quit.action = [this] { clicked.append(u"quit"_qs); };
        return {line(u"Quillmere"_qs, u"leaf.circle.fill"_qs), separator(), line(cpu, u"cpu"_qs), keepAwake, quit};
    }

    void fill(StatusItem &item)
    {
        item.setTitle(u"42%"_qs, ImagePosition::ImageLeft);
        item.setToolTip(u"Quillmere - CPU 42%"_qs);
        item.setMenu(entries());
    }

    bool isAwake = true;
    QString cpu = u"CPU: 42%"_qs;
    QStringList clicked;
    PretendPanel panel;
};

TEST_F(LinuxStatusItemTest, StandsInThePanelWithSquareIconsAndItsToolTip)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);

    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));

    EXPECT_THAT(
        panel.iconSizes(),
        testing::ElementsAre(QSize(16, 16), QSize(22, 22), QSize(24, 24), QSize(32, 32), QSize(48, 48), QSize(64, 64)));
    EXPECT_EQ(panel.toolTip(), u"Quillmere - CPU 42%"_qs);
    EXPECT_EQ(panel.property(u"Menu"_qs).value<QDBusObjectPath>().path(), u"/MenuBar"_qs);
}

TEST_F(LinuxStatusItemTest, ShowsItsMenuToTheLetter)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));

    const QList<PanelMenuLine> menu = panel.menu();

    ASSERT_EQ(menu.size(), 5);
    EXPECT_EQ(menu.at(0).properties.value(u"label"_qs), u"Quillmere"_qs);
    EXPECT_EQ(menu.at(0).properties.value(u"enabled"_qs), false);
    EXPECT_FALSE(menu.at(0).properties.value(u"icon-data"_qs).toByteArray().isEmpty());
    EXPECT_EQ(menu.at(1).properties.value(u"type"_qs), u"separator"_qs);
    EXPECT_EQ(menu.at(2).properties.value(u"label"_qs), u"CPU: 42%"_qs);
    EXPECT_EQ(menu.at(3).properties.value(u"label"_qs), u"Keep Awake (Prevent Sleep)"_qs);
    EXPECT_EQ(menu.at(3).properties.value(u"enabled"_qs), true);
    EXPECT_EQ(menu.at(3).properties.value(u"toggle-type"_qs), u"checkmark"_qs);
    EXPECT_EQ(menu.at(3).properties.value(u"toggle-state"_qs), 1);
    // An underscore marks the key that follows it; the mark itself is not shown.
    EXPECT_EQ(menu.at(4).properties.value(u"label"_qs), u"Quit _& more"_qs);
    EXPECT_FALSE(menu.at(4).properties.contains(u"icon-data"_qs));
    EXPECT_FALSE(menu.at(4).properties.contains(u"toggle-state"_qs));
}

TEST_F(LinuxStatusItemTest, DoesWhatIsClickedAndLeavesTheMarkToWhoeverSetsIt)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));
    const QList<PanelMenuLine> menu = panel.menu();
    ASSERT_EQ(menu.size(), 5);

    panel.click(menu.at(4).id);
    panel.click(menu.at(3).id);

    EXPECT_TRUE(comesTrue([&] { return clicked == QStringList{u"quit"_qs, u"awake"_qs}; }));
    EXPECT_EQ(panel.menu().at(3).properties.value(u"toggle-state"_qs), 1);
}

TEST_F(LinuxStatusItemTest, ChangesLinesInPlace)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));
    const QList<PanelMenuLine> before = panel.menu();
    ASSERT_EQ(before.size(), 5);

    cpu = u"CPU: 7%"_qs;
    isAwake = false;
    item.setMenu(entries());

    const QList<PanelMenuLine> after = panel.menu();
    ASSERT_EQ(after.size(), 5);
    EXPECT_EQ(after.at(2).id, before.at(2).id);
    EXPECT_EQ(after.at(2).properties.value(u"label"_qs), u"CPU: 7%"_qs);
    EXPECT_EQ(after.at(3).id, before.at(3).id);
    EXPECT_EQ(after.at(3).properties.value(u"toggle-state"_qs), 0);
}

TEST_F(LinuxStatusItemTest, TakesAMenuOfAnotherShape)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));

    item.setMenu({line(u"Quillmere"_qs), entries().last()});

    ASSERT_TRUE(comesTrue([&] { return panel.menu().size() == 2; }));
    panel.click(panel.menu().at(1).id);
    EXPECT_TRUE(comesTrue([&] { return clicked == QStringList{u"quit"_qs}; }));
}

TEST_F(LinuxStatusItemTest, SaysNothingWhereNothingChanges)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));
    ASSERT_EQ(panel.menu().size(), 5);
    panel.listen();

    fill(item);
    cpu = u"CPU: 43%"_qs;
    fill(item);
    fill(item);
    item.setToolTip(u"Quillmere - CPU 43%"_qs);

    EXPECT_TRUE(comesTrue([&] {
        return panel.heard == QHash<QString, int>{{u"ItemsPropertiesUpdated"_qs, 1}, {u"NewToolTip"_qs, 1}};
    }));
}

TEST_F(LinuxStatusItemTest, TellsOfANewFigure)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));
    panel.listen();

    item.setTitle(u"42%"_qs, ImagePosition::ImageLeft);
    item.setTitle(u"43%"_qs, ImagePosition::ImageLeft);

    EXPECT_TRUE(comesTrue([&] { return panel.heard == QHash<QString, int>{{u"NewIcon"_qs, 1}}; }));
}

TEST_F(LinuxStatusItemTest, OpensItsMenuWhereThePanelOnlySaysThatItWasClicked)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));

    panel.activate();

    ASSERT_TRUE(comesTrue([] { return qobject_cast<QMenu *>(QApplication::activePopupWidget()) != nullptr; }));
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    cpu = u"CPU: 99%"_qs;
    fill(item);
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->actions().at(2)->text(), u"CPU: 99%"_qs);
    EXPECT_EQ(menu->actions().at(4)->text(), u"Quit && more"_qs);
}

TEST_F(LinuxStatusItemTest, ComesWhenAPanelComesLate)
{
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(panel.start(PretendPanel::Host::Absent));
    EXPECT_EQ(panel.items(), QStringList());
    EXPECT_FALSE(item.isShown());

    panel.addHost();

    EXPECT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));
    EXPECT_EQ(panel.toolTip(), u"Quillmere - CPU 42%"_qs);
    EXPECT_EQ(panel.menu().size(), 5);
}

TEST_F(LinuxStatusItemTest, ComesAgainAfterThePanelsServiceWasStartedAnew)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return panel.items().size() == 1; }));

    panel.stop();
    ASSERT_TRUE(comesTrue([&] { return !item.isShown(); }));
    item.setTitle(u"7%"_qs, ImagePosition::ImageLeft);
    item.setToolTip(u"Quillmere - CPU 7%"_qs);
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));

    EXPECT_TRUE(comesTrue([&] { return item.isShown() && !panel.items().isEmpty(); }));
    EXPECT_EQ(panel.toolTip(), u"Quillmere - CPU 7%"_qs);
    EXPECT_EQ(panel.iconSizes().size(), statusItemIconSides().size());
    const QList<PanelMenuLine> menu = panel.menu();
    ASSERT_EQ(menu.size(), 5);
    panel.click(menu.at(4).id);
    EXPECT_TRUE(comesTrue([&] { return clicked == QStringList{u"quit"_qs}; }));
}

TEST_F(LinuxStatusItemTest, GoesWithTheLastPanelAndComesWithTheNext)
{
    ASSERT_TRUE(panel.start(PretendPanel::Host::Present));
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    ASSERT_TRUE(comesTrue([&] { return item.isShown(); }));

    panel.removeHost();
    EXPECT_TRUE(comesTrue([&] { return !item.isShown(); }));
    panel.addHost();

    EXPECT_TRUE(comesTrue([&] { return item.isShown(); }));
    EXPECT_TRUE(comesTrue([&] { return panel.items().size() == 2; }));
}

TEST_F(LinuxStatusItemTest, ComesWhenAnX11TrayComesLateAndGoesIntoIt)
{
    LinuxStatusItem item(QDBusConnection::sessionBus());
    fill(item);
    SystemTraySelection selection;
    ASSERT_FALSE(selection.isOwned());
    QProcess tray;

    tray.start(u"trayer"_qs, QStringList());

    EXPECT_TRUE(comesTrue([&] { return item.isShown(); }));
    EXPECT_TRUE(selection.isOwned());
    tray.terminate();
    ASSERT_TRUE(tray.waitForFinished());
}

TEST_F(LinuxStatusItemTest, TakesEverythingWhereThereIsNoPanel)
{
    const std::unique_ptr<StatusItem> item = LinuxStatusBar().makeStatusItem();
    fill(*item);
    fill(*item);
    ASSERT_TRUE(panel.start(PretendPanel::Host::Absent));

    EXPECT_EQ(panel.items(), QStringList());
}

TEST_F(LinuxStatusItemTest, TakesEverythingWhereThereIsNoBus)
{
    LinuxStatusItem item(QDBusConnection(u"a connection that nobody made"_qs));
    fill(item);
    QCoreApplication::processEvents();

    EXPECT_FALSE(item.isShown());
}
