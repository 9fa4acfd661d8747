#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"

#include <QQuickItem>
#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LargeFilesScreenTest : public ScreensFixture
{
protected:
    void addFile(const QByteArray &path, qint64 bytes)
    {
        const FilePath file = FilePath("/home/ada").appending(path);
        machine.files->addFile(file, bytes);
        machine.files->setTimes(file, machine.clock->now(), machine.clock->now());
    }

    /// Three files, and their list on the screen, the largest first.
    Person openList(const std::function<void()> &beforeTheScan = [] {})
    {
        addFile("Movies/film.mp4", 300'000'000);
        addFile("Downloads/disk.iso", 200'000'000);
        addFile("Documents/mail", 100'000'000);
        beforeTheScan();
        const Person person = open(SidebarTab::LargeFiles);
        EXPECT_TRUE(person.click(Button, u"Start Scan"_qs));
        EXPECT_TRUE(person.reads(u"3 files (600 MB)"_qs));
        return person;
    }

    /// Of the row whose name holds @p text; -1 when it is not on the screen.
    static double heightOf(const Person &person, const QString &text)
    {
        QAccessibleInterface *row = person.findWhatHolds(ListItem, text);
        return row ? row->rect().y() : -1;
    }

    static void expectOrder(const Person &person, const QStringList &names)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] {
            for (qsizetype i = 1; i < names.size(); ++i) {
                if (heightOf(person, names.at(i - 1)) >= heightOf(person, names.at(i)))
                    return false;
            }
            return heightOf(person, names.first()) > 0;
        })) << names.join(u' ').toStdString();
    }

    void rightClick(const Person &person, const QString &text)
    {
        const QRect row = person.placeOf([&] { return person.findWhatHolds(ListItem, text); });
        ASSERT_FALSE(row.isEmpty());
        QTest::mouseClick(app->mainWindow(), Qt::RightButton, Qt::NoModifier, row.center());
    }

    bool isRevealed() const
    {
        return QTest::qWaitFor([this] { return !machine.workspace->revealed().isEmpty(); });
    }
    bool isTrashed() const
    {
        return QTest::qWaitFor([this] { return !machine.files->trashed().isEmpty(); });
    }
};

} // namespace

TEST_F(LargeFilesScreenTest, InvitesToLookAndShowsNoListBefore)
{
    const Person person = open(SidebarTab::LargeFiles);

    EXPECT_TRUE(person.sees(Heading, u"Large Files"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Find files larger than 50 MB on your disk."_qs));
    EXPECT_TRUE(person.canUse(Button, u"Start Scan"_qs));
    EXPECT_TRUE(person.seesNo(RadioButton, u"All Files"_qs));
    EXPECT_TRUE(person.readsNo(u"files ("_qs));
}

TEST_F(LargeFilesScreenTest, ListsTheLargestFirstWithNamePlaceSizeAndDate)
{
    const Person person = openList();

    expectOrder(person, {u"film.mp4"_qs, u"disk.iso"_qs, u"mail"_qs});
    EXPECT_TRUE(person.sees(ListItem, u"film.mp4, 300 MB, Nov 21, 2026, /home/ada/Movies/film.mp4"_qs));
    for (const char *column : {"Name", "Size", "Last Modified"})
        EXPECT_TRUE(person.canUse(Button, QString::fromLatin1(column)));
    for (const char *category : {"All Files", "Documents", "Media", "Apps", "Archives", "Installers", "Disk Images"})
        EXPECT_TRUE(person.canUse(RadioButton, QString::fromLatin1(category)));
    EXPECT_TRUE(person.seesNo(RadioButton, u"Developer"_qs));
    EXPECT_TRUE(person.seesNo(RadioButton, u"Old Files"_qs));
}

TEST_F(LargeFilesScreenTest, IsNarrowedByAClickOnACategory)
{
    const Person person = openList();

    ASSERT_TRUE(person.click(RadioButton, u"Disk Images"_qs));
    EXPECT_TRUE(person.reads(u"1 files (200 MB)"_qs));
    EXPECT_TRUE(person.readsNo(u"film.mp4"_qs));

    ASSERT_TRUE(person.click(RadioButton, u"Installers"_qs));
    EXPECT_TRUE(person.reads(u"0 files (Zero KB)"_qs));
    EXPECT_EQ(person.findWhatHolds(ListItem, u"/home/ada"_qs), nullptr);

    ASSERT_TRUE(person.click(RadioButton, u"All Files"_qs));
    EXPECT_TRUE(person.reads(u"3 files (600 MB)"_qs));
}

TEST_F(LargeFilesScreenTest, IsSortedByAClickOnAColumnFirstDescending)
{
    const Person person = openList();

    ASSERT_TRUE(person.click(Button, u"Name"_qs));
    expectOrder(person, {u"mail"_qs, u"film.mp4"_qs, u"disk.iso"_qs});
    EXPECT_EQ(person.find(Button, u"Name"_qs)->text(QAccessible::Description), u"Sorted descending"_qs);
    EXPECT_EQ(person.find(Button, u"Size"_qs)->text(QAccessible::Description), QString());
    EXPECT_TRUE(showsSymbolOnScreen(u"chevron.down"_qs));
    EXPECT_FALSE(showsSymbolOnScreen(u"chevron.up"_qs));

    ASSERT_TRUE(person.click(Button, u"Name"_qs));
    expectOrder(person, {u"disk.iso"_qs, u"film.mp4"_qs, u"mail"_qs});
    EXPECT_EQ(person.find(Button, u"Name"_qs)->text(QAccessible::Description), u"Sorted ascending"_qs);
    EXPECT_TRUE(showsSymbolOnScreen(u"chevron.up"_qs));
    EXPECT_FALSE(showsSymbolOnScreen(u"chevron.down"_qs));
}

TEST_F(LargeFilesScreenTest, SortsBySizeAndByTimeUnderTheirOwnHeads)
{
    const QDateTime now = machine.clock->now();
    const Person person = openList([&] {
        // The larger, the younger, but for the smallest, which is the youngest.
        for (const auto &[path, days] :
             {std::pair("Movies/film.mp4", -2), {"Downloads/disk.iso", -3}, {"Documents/mail", -1}}) {
            const QDateTime changed = now.addDays(days);
            machine.files->setTimes(FilePath("/home/ada").appending(path), changed, changed);
        }
    });

    ASSERT_TRUE(person.click(Button, u"Size"_qs));
    expectOrder(person, {u"mail"_qs, u"disk.iso"_qs, u"film.mp4"_qs});

    ASSERT_TRUE(person.click(Button, u"Last Modified"_qs));
    expectOrder(person, {u"mail"_qs, u"film.mp4"_qs, u"disk.iso"_qs});
    ASSERT_TRUE(person.click(Button, u"Last Modified"_qs));
    expectOrder(person, {u"disk.iso"_qs, u"film.mp4"_qs, u"mail"_qs});
}

TEST_F(LargeFilesScreenTest, CoversItselfWhileItScansAndIsCancelledByItsButton)
{
    addFile("Downloads/a", 60'000'000);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::LargeFiles);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.reads(u"Starting scan..."_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));

    EXPECT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.canUse(Button, u"Start Scan"_qs));
    gate.open();
    EXPECT_TRUE(person.readsNo(u"files ("_qs));
}

TEST_F(LargeFilesScreenTest, RevealsAFileFromTheMenuOfARightClick)
{
    const Person person = openList();

    rightClick(person, u"disk.iso"_qs);
    ASSERT_TRUE(person.sees(MenuItem, u"Move to Trash"_qs));
    ASSERT_TRUE(person.click(MenuItem, u"Reveal in Finder"_qs));

    EXPECT_TRUE(isRevealed());
    EXPECT_THAT(machine.workspace->revealed(), ElementsAre(FilePath("/home/ada/Downloads/disk.iso")));
    EXPECT_TRUE(person.seesNo(MenuItem, u"Move to Trash"_qs));
}

TEST_F(LargeFilesScreenTest, MovesAFileToTheTrashAfterAQuestion)
{
    const Person person = openList();
    rightClick(person, u"disk.iso"_qs);
    ASSERT_TRUE(person.click(MenuItem, u"Move to Trash"_qs));
    ASSERT_TRUE(person.sees(Heading, u"Move this file to Trash?"_qs) || person.reads(u"Move this file to Trash?"_qs));
    EXPECT_TRUE(person.reads(u"disk.iso\nSize: 200 MB"_qs));
    EXPECT_THAT(machine.files->trashed(), IsEmpty());

    ASSERT_TRUE(person.click(Button, u"Move to Trash"_qs));

    EXPECT_TRUE(isTrashed());
    EXPECT_THAT(machine.files->trashed(), ElementsAre(FilePath("/home/ada/Downloads/disk.iso")));
    EXPECT_TRUE(person.reads(u"2 files (400 MB)"_qs));
    EXPECT_TRUE(person.readsNo(u"disk.iso"_qs));
    expectOrder(person, {u"film.mp4"_qs, u"mail"_qs});
}

TEST_F(LargeFilesScreenTest, LeavesAFileWhereItIsWhenTheQuestionIsDenied)
{
    const Person person = openList();
    for (const bool byKey : {false, true}) {
        rightClick(person, u"disk.iso"_qs);
        ASSERT_TRUE(person.click(MenuItem, u"Move to Trash"_qs));
        ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Cancel"_qs));

        if (byKey)
            person.press(Qt::Key_Escape);
        else
            ASSERT_TRUE(person.click(Button, u"Cancel"_qs));

        EXPECT_TRUE(person.readsNo(u"Move this file to Trash?"_qs));
        EXPECT_TRUE(person.reads(u"3 files (600 MB)"_qs));
    }
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
}

TEST_F(LargeFilesScreenTest, LeavesTheKeyboardWhereItWentWhileTheQuestionAppeared)
{
    const Person person = openList();
    rightClick(person, u"disk.iso"_qs);
    ASSERT_TRUE(person.click(MenuItem, u"Move to Trash"_qs));
    ASSERT_TRUE(person.sees(Button, u"Cancel"_qs));

    ASSERT_TRUE(person.tabTo(u"Move to Trash"_qs));

    EXPECT_FALSE(QTest::qWaitFor([&] { return person.focusedName() == u"Cancel"_qs; }, 1000));
    EXPECT_EQ(person.focusedName(), u"Move to Trash"_qs);
}

TEST_F(LargeFilesScreenTest, DoesAllByKeyboard)
{
    const Person person = openList();
    ASSERT_TRUE(person.tabToWhatHolds(u"film.mp4"_qs));
    person.press(Qt::Key_Down);
    EXPECT_TRUE(person.focusedName().startsWith(u"disk.iso"_qs));
    person.press(Qt::Key_End);
    EXPECT_TRUE(person.focusedName().startsWith(u"mail"_qs));
    person.press(Qt::Key_Home);
    EXPECT_TRUE(person.focusedName().startsWith(u"film.mp4"_qs));

    person.press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(person.sees(MenuItem, u"Reveal in Finder"_qs));
    person.press(Qt::Key_Return);
    EXPECT_TRUE(isRevealed());
    EXPECT_THAT(machine.workspace->revealed(), ElementsAre(FilePath("/home/ada/Movies/film.mp4")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return person.focusedName().startsWith(u"film.mp4"_qs); }));

    person.press(Qt::Key_Down);
    person.press(Qt::Key_Menu);
    ASSERT_TRUE(person.sees(MenuItem, u"Move to Trash"_qs));
    person.press(Qt::Key_Down);
    person.press(Qt::Key_Return);
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Cancel"_qs));
    EXPECT_TRUE(person.reads(u"disk.iso\nSize: 200 MB"_qs));
    ASSERT_TRUE(person.tabTo(u"Move to Trash"_qs));
    person.press(Qt::Key_Return);

    EXPECT_TRUE(isTrashed());
    EXPECT_TRUE(person.reads(u"2 files (400 MB)"_qs));
    EXPECT_TRUE(person.readsNo(u"disk.iso"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return person.focusedName().contains(u"/home/ada"_qs); }))
        << "The keyboard is still in the list, at: " << person.focusedName().toStdString();
}

TEST_F(LargeFilesScreenTest, OpensTheMenuByTheButtonOfARowAndByAnAssistiveTool)
{
    const Person person = openList();
    ASSERT_TRUE(person.click(Button, u"Open menu"_qs));
    ASSERT_TRUE(person.sees(MenuItem, u"Reveal in Finder"_qs));
    person.press(Qt::Key_Escape);
    ASSERT_TRUE(person.seesNo(MenuItem, u"Reveal in Finder"_qs));

    QAccessibleInterface *row = person.findWhatHolds(ListItem, u"mail"_qs);
    ASSERT_NE(row, nullptr);
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    ASSERT_TRUE(person.click(MenuItem, u"Reveal in Finder"_qs));
    EXPECT_TRUE(isRevealed());
    EXPECT_THAT(machine.workspace->revealed(), ElementsAre(FilePath("/home/ada/Documents/mail")));
}

TEST_F(LargeFilesScreenTest, BeginsAnewWhenItIsLeftAndOpenedAgain)
{
    const Person person = openList();

    app->appState().setSelectedTab(SidebarTab::History);
    app->appState().setSelectedTab(SidebarTab::LargeFiles);

    EXPECT_TRUE(person.canUse(Button, u"Start Scan"_qs));
}

TEST_F(LargeFilesScreenTest, KeepsOnlyTheRowsInSightOfAHundredThousand)
{
    for (int folder = 0; folder < 100; ++folder) {
        for (int i = 0; i < 1000; ++i)
            addFile("Movies/" + QByteArray::number(folder) + '/' + QByteArray::number(i) + ".mkv", 50'000'000 + i);
    }
    const Person person = open(SidebarTab::LargeFiles);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(QTest::qWaitFor([&] { return person.reads(u"100000 files ("_qs); }, 300'000));

    ASSERT_TRUE(person.tabToWhatHolds(u"999.mkv"_qs));
    person.press(Qt::Key_End);

    EXPECT_TRUE(person.focusedName().startsWith(u"0.mkv"_qs)) << person.focusedName().toStdString();
    const auto rows = app->mainWindow()->findChildren<QQuickItem *>();
    EXPECT_LT(rows.size(), 4000);
}

TEST_F(LargeFilesScreenTest, SpeaksTheLanguageThatIsChosen)
{
    const Person person = openList();

    app->localizer().setLanguage(Language::Russian);

    EXPECT_TRUE(person.reads(u"3 шт. (600 МБ)"_qs));
    EXPECT_TRUE(person.sees(Button, u"Дата изменения"_qs));
    EXPECT_TRUE(person.sees(RadioButton, u"Образы дисков"_qs));
    EXPECT_TRUE(person.reads(u"film.mp4, 300 МБ"_qs));
}
