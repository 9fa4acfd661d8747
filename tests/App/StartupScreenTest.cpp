#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"

#include <QQuickItem>
#include <QTest>

#include <stdexcept>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class StartupScreenTest : public ScreensFixture
{
protected:
    FilePath add(const QByteArray &path, const QByteArray &pairs = {}) const
    {
        const FilePath file(path);
        machine.files->addFile(file, 100, "<plist version=\"1.0\"><dict>" + pairs + "</dict></plist>");
        return file;
    }
    FilePath addAgent(const QByteArray &name, const QByteArray &pairs = {}) const
    {
        return add("/home/ada/Library/LaunchAgents/" + name, pairs);
    }
    [[nodiscard]] bool isDisabled(const FilePath &file) const
    {
        return machine.files->contentsOfFile(file).valueOr({}).contains("<key>Disabled</key>\n\t<true/>");
    }
    [[nodiscard]] bool becomesDisabled(const FilePath &file) const
    {
        return QTest::qWaitFor([&] { return isDisabled(file); }, 10'000);
    }
    static bool isOn(const Person &person, const QString &name)
    {
        QAccessibleInterface *found = person.find(CheckBox, name);
        return found && found->state().checked;
    }

    static QQuickItem *itemOf(const Person &person, QAccessible::Role role, const QString &name)
    {
        QAccessibleInterface *found = person.find(role, name);
        return found ? qobject_cast<QQuickItem *>(found->object()) : nullptr;
    }
    /// More items than there is room for. Gives the file of the first.
    FilePath addManyAgents() const
    {
        for (int number = 10; number < 60; ++number)
            addAgent("agent" + QByteArray::number(number) + ".plist");
        return FilePath("/home/ada/Library/LaunchAgents/agent10.plist");
    }
    /// The list of items, at rest with its first row out of sight by the wheel. Null where it does not scroll.
    static QQuickItem *scrolledAway(const Person &person)
    {
        QQuickItem *list = itemOf(person, List, u"Startup Items"_qs);
        if (list)
            person.turnWheel(list->mapToScene(list->boundingRect().center()).toPoint(), -1000);
        const auto rests = [&] { return contentY(*list) > 500 && !list->property("moving").toBool(); };
        return list && QTest::qWaitFor(rests) ? list : nullptr;
    }
    /// The same, with the keyboard on that first row.
    static QQuickItem *scrolledAwayFromTheKeyboard(const Person &person)
    {
        return person.tabToWhatHolds(u"agent10, "_qs) ? scrolledAway(person) : nullptr;
    }
    static double contentY(const QQuickItem &list) { return list.property("contentY").toDouble(); }
    static bool comesToItsBeginning(const QQuickItem &list)
    {
        return QTest::qWaitFor([&] { return contentY(list) <= 0; });
    }

    static bool fadesTo(const QQuickItem &list, qreal opacity)
    {
        return QTest::qWaitFor([&] { return list.parentItem()->opacity() == opacity; }, 10'000);
    }
    static void click(const QQuickItem &item)
    {
        QTest::mouseClick(item.window(), Qt::LeftButton, {}, item.mapToScene(item.boundingRect().center()).toPoint());
    }

    const QString warning = u"System Integrity Warning. Warning: Disabling system Launch Agents or Daemons may cause "
                            u"certain applications "
                            u"or macOS features to stop working correctly. Only disable items you recognize."_qs;
    const QString changeError = u"Could not change this startup item. Administrator privileges may be required."_qs;
};

} // namespace

TEST_F(StartupScreenTest, WarnsAndSaysThatThereIsNothing)
{
    const Person person = open(SidebarTab::Startup);

    EXPECT_TRUE(person.sees(Heading, u"Startup Items"_qs));
    EXPECT_TRUE(person.sees(AlertMessage, warning));
    EXPECT_TRUE(person.sees(StaticText, u"No startup items found"_qs));
    EXPECT_TRUE(person.seesNo(StaticText, u"Risk"_qs));
}

TEST_F(StartupScreenTest, ListsEveryItemUnderTheHeadsOfItsColumns)
{
    addAgent("a.plist", "<key>Label</key><string>org.example.agent</string>");
    add("/Library/LaunchDaemons/d.plist", "<key>Disabled</key><true/>");
    const Person person = open(SidebarTab::Startup);

    EXPECT_TRUE(person.sees(ListItem,
                            u"org.example.agent, Launch Agent, Safe, On, "
                            u"/home/ada/Library/LaunchAgents/a.plist"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"d, Launch Daemon, High, Off, /Library/LaunchDaemons/d.plist"_qs));
    for (const QString &head : {u"Name"_qs, u"Type"_qs, u"Risk"_qs, u"Status"_qs})
        EXPECT_TRUE(person.sees(StaticText, head)) << head.toStdString();
    EXPECT_TRUE(isOn(person, u"org.example.agent"_qs));
    EXPECT_FALSE(isOn(person, u"d"_qs));
    EXPECT_TRUE(person.sees(AlertMessage, warning));
}

TEST_F(StartupScreenTest, BringsTheRowOfTheKeyboardIntoSightBeforeAKeySwitchesIt)
{
    const FilePath first = addManyAgents();
    const Person person = open(SidebarTab::Startup);
    const QQuickItem *list = scrolledAwayFromTheKeyboard(person);
    ASSERT_TRUE(list);

    person.press(Qt::Key_Space);
    EXPECT_TRUE(comesToItsBeginning(*list));
    EXPECT_TRUE(person.focusedName().contains(u"agent10, Launch Agent, Safe, On"_qs));
    person.press(Qt::Key_Space);

    EXPECT_TRUE(becomesDisabled(first));
}

TEST_F(StartupScreenTest, BringsTheRowOfTheKeyboardIntoSightBeforeAKeyOpensItsMenu)
{
    addManyAgents();
    const Person person = open(SidebarTab::Startup);
    const QQuickItem *list = scrolledAwayFromTheKeyboard(person);
    ASSERT_TRUE(list);

    person.press(Qt::Key_Menu);
    EXPECT_TRUE(comesToItsBeginning(*list));
    EXPECT_TRUE(person.seesNo(MenuItem, u"Reveal in Finder"_qs));
    person.press(Qt::Key_Menu);

    EXPECT_TRUE(person.sees(MenuItem, u"Reveal in Finder"_qs));
}

TEST_F(StartupScreenTest, BringsTheRowOfTheKeyboardIntoSightWhenTabComesBackToTheList)
{
    addManyAgents();
    const Person person = open(SidebarTab::Startup);
    ASSERT_TRUE(person.tabToWhatHolds(u"agent10, "_qs));
    person.press(Qt::Key_Tab);
    const QQuickItem *list = scrolledAway(person);
    ASSERT_TRUE(list);

    person.press(Qt::Key_Backtab, Qt::ShiftModifier);

    EXPECT_TRUE(person.focusedName().contains(u"agent10, "_qs)) << person.focusedName().toStdString();
    EXPECT_TRUE(comesToItsBeginning(*list));
}

TEST_F(StartupScreenTest, StaysWhereTheWheelHasBroughtItWhileAnotherWindowIsInFront)
{
    addManyAgents();
    const Person person = open(SidebarTab::Startup);
    const QQuickItem *list = scrolledAwayFromTheKeyboard(person);
    ASSERT_TRUE(list);
    const double before = contentY(*list);

    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    ASSERT_FALSE(list->hasActiveFocus());
    app->mainWindow()->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(app->mainWindow()));

    ASSERT_TRUE(list->hasActiveFocus());
    EXPECT_EQ(contentY(*list), before);
}

TEST_F(StartupScreenTest, SwitchesAnItemOffAndOnAgainByItsSwitch)
{
    const FilePath file = addAgent("a.plist");
    const Person person = open(SidebarTab::Startup);

    ASSERT_TRUE(person.click(CheckBox, u"a"_qs));
    EXPECT_TRUE(becomesDisabled(file));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isOn(person, u"a"_qs); }, 10'000));

    ASSERT_TRUE(person.click(CheckBox, u"a"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return isOn(person, u"a"_qs); }, 10'000));
    EXPECT_TRUE(machine.files->contentsOfFile(file).valueOr({}).contains("<key>Disabled</key>\n\t<false/>"));
}

TEST_F(StartupScreenTest, IsUsedByTheKeyboardAlone)
{
    addAgent("a.plist");
    const FilePath second = addAgent("b.plist");
    const Person person = open(SidebarTab::Startup);
    ASSERT_TRUE(person.reads(u"a, Launch Agent"_qs));

    ASSERT_TRUE(person.tabToWhatHolds(u"a, Launch Agent"_qs));
    person.press(Qt::Key_Down);
    person.press(Qt::Key_Space);
    EXPECT_TRUE(becomesDisabled(second));

    // The list has been read again, and the keyboard is still where it was.
    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"b, Launch Agent, Safe, Off, /home/ada/Library/LaunchAgents/b.plist"_qs));
}

TEST_F(StartupScreenTest, RevealsAFileFromItsMenu)
{
    const FilePath file = addAgent("a.plist");
    const Person person = open(SidebarTab::Startup);
    ASSERT_TRUE(person.reads(u"a, Launch Agent"_qs));

    ASSERT_TRUE(person.tabToWhatHolds(u"a, Launch Agent"_qs));
    person.press(Qt::Key_Menu);
    ASSERT_TRUE(person.sees(MenuItem, u"Reveal in Finder"_qs));
    ASSERT_TRUE(person.click(MenuItem, u"Reveal in Finder"_qs));

    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->revealed() == QList<FilePath>{file}; }, 10'000));
}

TEST_F(StartupScreenTest, ShowsTheBannerAndLeavesTheSwitchOnWhereADaemonMayNotBeWritten)
{
    const FilePath file = add("/Library/LaunchDaemons/d.plist");
    machine.files->refuse(file, Failure::Kind::NoPermission);
    const Person person = open(SidebarTab::Startup);

    ASSERT_TRUE(person.click(CheckBox, u"d"_qs));

    ASSERT_TRUE(person.sees(AlertMessage, changeError));
    EXPECT_TRUE(isOn(person, u"d"_qs));
    EXPECT_FALSE(isDisabled(file));
    EXPECT_TRUE(person.sees(AlertMessage, warning));

    ASSERT_TRUE(person.click(Button, u"Dismiss"_qs));
    EXPECT_TRUE(person.seesNo(AlertMessage, changeError));
}

TEST_F(StartupScreenTest, ShowsThatItLoadsInPlaceOfTheList)
{
    addAgent("a.plist");
    const Gate gate;
    machine.startupEntries->onListing([gate] { gate.wait(); });
    const Person person = open(SidebarTab::Startup);

    EXPECT_TRUE(person.sees(ProgressBar, u"Loading"_qs));
    EXPECT_TRUE(person.readsNo(u"a, Launch Agent"_qs));
    EXPECT_TRUE(person.seesNo(StaticText, u"No startup items found"_qs));

    gate.open();
    EXPECT_TRUE(person.reads(u"a, Launch Agent"_qs));
    EXPECT_TRUE(person.seesNo(ProgressBar, u"Loading"_qs));
}

TEST_F(StartupScreenTest, ShowsThatItLoadsAgainInPlaceOfTheListWhichKeepsTheKeyboard)
{
    addAgent("a.plist");
    const Person person = open(SidebarTab::Startup);
    ASSERT_TRUE(person.reads(u"a, Launch Agent"_qs));
    EXPECT_TRUE(person.seesNo(ProgressBar, u"Loading"_qs));
    ASSERT_TRUE(person.tabToWhatHolds(u"a, Launch Agent"_qs));
    const QQuickItem *list = itemOf(person, List, u"Startup Items"_qs);
    ASSERT_TRUE(list);
    const Gate gate;
    machine.startupEntries->onListing([gate] { gate.wait(); });

    person.press(Qt::Key_Space);

    EXPECT_TRUE(person.sees(ProgressBar, u"Loading"_qs));
    EXPECT_TRUE(person.readsNo(u"a, Launch Agent"_qs));
    EXPECT_TRUE(fadesTo(*list, 0));
    gate.open();
    EXPECT_TRUE(fadesTo(*list, 1));
    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"a, Launch Agent, Safe, Off, /home/ada/Library/LaunchAgents/a.plist"_qs));
    EXPECT_TRUE(person.seesNo(ProgressBar, u"Loading"_qs));
}

TEST_F(StartupScreenTest, SwitchesAndOpensNothingThatIsNotSeenWhileItLoads)
{
    const FilePath file = addAgent("a.plist");
    const Person person = open(SidebarTab::Startup);
    ASSERT_TRUE(person.reads(u"a, Launch Agent"_qs));
    ASSERT_TRUE(person.tabToWhatHolds(u"a, Launch Agent"_qs));
    const QQuickItem *list = itemOf(person, List, u"Startup Items"_qs);
    const QQuickItem *toggle = itemOf(person, CheckBox, u"a"_qs);
    const QQuickItem *more = itemOf(person, Button, u"Open menu"_qs);
    ASSERT_TRUE(list && toggle && more);
    const Gate gate;
    machine.startupEntries->onListing([gate] { gate.wait(); });
    person.press(Qt::Key_F5);
    ASSERT_TRUE(fadesTo(*list, 0));

    click(*toggle);
    person.press(Qt::Key_Space);
    click(*more);
    person.press(Qt::Key_Menu);

    EXPECT_FALSE(isDisabled(file));
    EXPECT_TRUE(person.seesNo(MenuItem, u"Reveal in Finder"_qs));
    EXPECT_TRUE(person.seesNo(CheckBox, u"a"_qs));
    EXPECT_TRUE(person.seesNo(StaticText, u"Status"_qs));
    gate.open();
    EXPECT_TRUE(fadesTo(*list, 1));
    EXPECT_FALSE(isDisabled(file));
    ASSERT_TRUE(person.click(CheckBox, u"a"_qs));
    EXPECT_TRUE(becomesDisabled(file));
}

TEST_F(StartupScreenTest, SaysThatTheItemsCouldNotBeLoaded)
{
    machine.startupEntries->onListing([] { throw std::runtime_error("pretended"); });
    const Person person = open(SidebarTab::Startup);

    EXPECT_TRUE(person.sees(AlertMessage, u"Could not load startup items."_qs));
    EXPECT_TRUE(person.sees(StaticText, u"No startup items found"_qs));
}

TEST_F(StartupScreenTest, FollowsAChangeOfLanguageAtOnce)
{
    add("/Library/LaunchDaemons/d.plist");
    const Person person = open(SidebarTab::Startup);
    ASSERT_TRUE(person.reads(u"d, Launch Daemon, High"_qs));

    app->localizer().setLanguage(Language::Spanish);

    EXPECT_TRUE(person.reads(u"d, Daemon de inicio, "_qs));
    EXPECT_TRUE(person.sees(Heading, u"Elementos de inicio"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Estado"_qs));
}
