#include "App/ScreensFixture.h"
#include "Fakes/ByteUnits.h"
#include "Fakes/Gate.h"

#include <QQuickItem>
#include <QTest>

#include <atomic>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class SystemDataScreenTest : public ScreensFixture
{
protected:
    SystemDataScreenTest()
    {
        machine.files->setCapacity(VolumeCapacity{100 * gigabyte, 40 * gigabyte, 40 * gigabyte});
        add("/Applications", 10 * gigabyte);
        add("/home/ada/Documents", gigabyte);
    }

    void add(const char *folder, qint64 bytes) { machine.files->addFile(FilePath(folder).appending("data"), bytes); }

    static QQuickItem *itemOf(const Person &person, QAccessible::Role role, const QString &name)
    {
        QAccessibleInterface *found = person.find(role, name);
        return found ? qobject_cast<QQuickItem *>(found->object()) : nullptr;
    }
};

} // namespace

TEST_F(SystemDataScreenTest, ScansByItselfAndListsTheSixPartsInTheirOrder)
{
    const Person person = open(SidebarTab::SystemData);

    const QStringList rows
        = {u"Applications, 10 GB, 10.0%"_qs, u"Documents, 1 GB, 1.0%"_qs,      u"Developer, Zero KB, 0.0%"_qs,
           u"Caches, Zero KB, 0.0%"_qs,      u"macOS System, 49 GB, 49.0%"_qs, u"Free Space, 40 GB, 40.0%"_qs};
    double before = 0;
    for (const QString &row : rows) {
        const QQuickItem *item = itemOf(person, ListItem, row);
        ASSERT_NE(item, nullptr) << row.toStdString();
        EXPECT_TRUE(QTest::qWaitFor([&] { return item->mapToScene({0, 0}).y() > before; })) << row.toStdString();
        before = item->mapToScene({0, 0}).y();
    }
    EXPECT_TRUE(person.sees(Heading, u"Storage Allocation"_qs));
    EXPECT_TRUE(person.sees(Heading, u"Storage Categories"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Total Capacity: 100 GB"_qs));
}

TEST_F(SystemDataScreenTest, DrawsEachPartAsWideAsItsShareAndLeavesOutOneOfExactlyOnePercent)
{
    const Person person = open(SidebarTab::SystemData);
    const QQuickItem *bar = itemOf(person, Chart, u"Storage Allocation"_qs);
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->height(), 24);
    const QQuickItem *last = itemOf(person, StaticText, u"Free Space, 40 GB, 40.0%"_qs);
    ASSERT_NE(last, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return last->width() > 0; }));

    const auto widthOf = [&](const QString &name) {
        const QQuickItem *part = itemOf(person, StaticText, name);
        return part ? part->width() / bar->width() : -1;
    };
    EXPECT_NEAR(widthOf(u"Applications, 10 GB, 10.0%"_qs), 0.10, 0.0001);
    EXPECT_NEAR(widthOf(u"macOS System, 49 GB, 49.0%"_qs), 0.49, 0.0001);
    EXPECT_NEAR(widthOf(u"Free Space, 40 GB, 40.0%"_qs), 0.40, 0.0001);
    EXPECT_TRUE(person.seesNo(StaticText, u"Documents, 1 GB, 1.0%"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Documents, 1 GB, 1.0%"_qs));
}

TEST_F(SystemDataScreenTest, LeadsThroughThePartsOfTheBarWithTheArrowKeys)
{
    const Person person = open(SidebarTab::SystemData);
    ASSERT_TRUE(person.sees(ListItem, u"Free Space, 40 GB, 40.0%"_qs));

    ASSERT_TRUE(person.tabTo(u"Applications, 10 GB, 10.0%"_qs));
    person.press(Qt::Key_Right);
    EXPECT_EQ(person.focusedName(), u"macOS System, 49 GB, 49.0%"_qs);
    person.press(Qt::Key_End);
    EXPECT_EQ(person.focusedName(), u"Free Space, 40 GB, 40.0%"_qs);
    person.press(Qt::Key_Right);
    EXPECT_EQ(person.focusedName(), u"Free Space, 40 GB, 40.0%"_qs);
    person.press(Qt::Key_Left);
    EXPECT_EQ(person.focusedName(), u"macOS System, 49 GB, 49.0%"_qs);
    person.press(Qt::Key_Home);
    EXPECT_EQ(person.focusedName(), u"Applications, 10 GB, 10.0%"_qs);
}

TEST_F(SystemDataScreenTest, ShowsTheStartAgainWhenCancelledAndScansFromThere)
{
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::SystemData);
    EXPECT_TRUE(person.sees(Dialog, u"Analyzing Disk Space"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Categorizing folder structures..."_qs));
    EXPECT_TRUE(person.reads(u"30%"_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    gate.open();

    EXPECT_TRUE(person.sees(StaticText, u"Analyze disk space allocation across categories."_qs));
    EXPECT_TRUE(person.readsNo(u"Storage Categories"_qs));
    EXPECT_TRUE(showsSymbolOnScreen(u"internaldrive"_qs));
    ASSERT_TRUE(person.click(Button, u"Scan Disk"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Applications, 10 GB, 10.0%"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Scan Disk"_qs));
}

TEST_F(SystemDataScreenTest, LetsTheKeyboardGoOnThroughTheSidebarWhileItScansAndTakesItWhenItComesToTheScreen)
{
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open();
    ASSERT_TRUE(person.click(ListItem, u"Browsers"_qs));
    person.press(Qt::Key_Down);
    EXPECT_TRUE(person.sees(Dialog, u"Analyzing Disk Space"_qs));
    EXPECT_EQ(person.focusedName(), u"System Data"_qs);

    person.press(Qt::Key_Down);
    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::Startup);
    person.press(Qt::Key_Up);
    EXPECT_TRUE(person.sees(Dialog, u"Analyzing Disk Space"_qs));
    EXPECT_TRUE(person.tabTo(u"Cancel"_qs));
    person.press(Qt::Key_Tab);
    EXPECT_EQ(person.focusedName(), u"Cancel"_qs);
    gate.open();
    EXPECT_TRUE(person.seesNo(Dialog, u"Analyzing Disk Space"_qs));
}

TEST_F(SystemDataScreenTest, StandsInNobodysWayToAnotherScreenWhileItScans)
{
    const Gate gate;
    const auto entries = std::make_shared<std::atomic<int>>(0);
    machine.files->onMeasure([gate, entries](const FilePath &) {
        ++*entries;
        gate.wait();
    });
    const Person person = open(SidebarTab::SystemData);
    EXPECT_TRUE(person.sees(Dialog, u"Analyzing Disk Space"_qs));
    EXPECT_TRUE(QTest::qWaitFor([entries] { return entries->load() == 1; }));
    person.press(Qt::Key_F5);
    EXPECT_EQ(entries->load(), 1);

    person.press(Qt::Key_5, Qt::ControlModifier);
    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::Browsers);
    person.press(Qt::Key_7, Qt::ControlModifier);
    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::Startup);
    gate.open();
}

TEST_F(SystemDataScreenTest, KeepsAFilledListWhenTheWindowIsHiddenAndShownAgain)
{
    const Person person = open(SidebarTab::SystemData);
    ASSERT_TRUE(person.sees(ListItem, u"Applications, 10 GB, 10.0%"_qs));
    const auto walks = std::make_shared<std::atomic<int>>(0);
    machine.files->onMeasure([walks](const FilePath &) { ++*walks; });

    app->mainWindow()->hide();
    app->mainWindow()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app->mainWindow()));

    EXPECT_TRUE(person.sees(ListItem, u"Applications, 10 GB, 10.0%"_qs));
    EXPECT_EQ(walks->load(), 0);
}

TEST_F(SystemDataScreenTest, ScansAnewWithANewScreen)
{
    const Person person = open(SidebarTab::SystemData);
    ASSERT_TRUE(person.sees(ListItem, u"Applications, 10 GB, 10.0%"_qs));
    add("/Applications/more", 10 * gigabyte);

    ASSERT_TRUE(person.click(ListItem, u"History"_qs));
    ASSERT_TRUE(person.click(ListItem, u"System Data"_qs));

    EXPECT_TRUE(person.sees(ListItem, u"Applications, 20 GB, 20.0%"_qs));
}

TEST_F(SystemDataScreenTest, DrawsNoPartOfADiskWithoutASize)
{
    machine.files->setCapacity(VolumeCapacity{0, 0, 0});
    const Person person = open(SidebarTab::SystemData);

    EXPECT_TRUE(person.sees(ListItem, u"Applications, 10 GB, 0%"_qs));
    EXPECT_TRUE(person.seesNo(StaticText, u"Applications, 10 GB, 0%"_qs));
}

TEST_F(SystemDataScreenTest, GrowsTheBarInUnlessMotionIsUnwanted)
{
    const Person person = open(SidebarTab::SystemData);
    ASSERT_TRUE(person.sees(ListItem, u"Applications, 10 GB, 10.0%"_qs));
    QQuickItem *bar = itemOf(person, Chart, u"Storage Allocation"_qs);
    EXPECT_EQ(bar->property("shownShare").toDouble(), 1);

    machine.appearance->set(ColorScheme::Light, false);
    QMetaObject::invokeMethod(bar, "grow");
    EXPECT_LT(bar->property("shownShare").toDouble(), 1);
    EXPECT_TRUE(QTest::qWaitFor([bar] { return bar->property("shownShare").toDouble() == 1; }));
}
