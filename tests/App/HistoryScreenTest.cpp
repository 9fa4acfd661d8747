#include "App/ScreensFixture.h"
#include "Utilities/DateFormatter.h"

#include <QColor>
#include <QFile>
#include <QQuickItem>
#include <QSet>
#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class HistoryScreenTest : public ScreensFixture
{
protected:
    void addRecord(OperationStatus status = OperationStatus::Completed, const QStringList &errors = {})
    {
        OperationLog log;
        log.date = machine.clock->now();
        log.cleanedSize = cleanedSize;
        log.status = status;
        log.errors = errors;
        HistoryService(machine.files).save(log);
    }

    static QStringList moreErrorsThanFit()
    {
        QStringList errors;
        for (int i = 0; i < 60; ++i)
            errors.append(u"error %1"_qs.arg(i));
        return errors;
    }
    /// Of 1 MB, 2 MB and so on, the second with @p errors.
    void addRecordsWithALongSecond(int count, const QStringList &errors)
    {
        for (cleanedSize = 1'000'000; cleanedSize <= count * 1'000'000; cleanedSize += 1'000'000)
            addRecord(OperationStatus::Completed, cleanedSize == 2'000'000 ? errors : QStringList());
    }
    /// By keys. True once all @p errors of it are laid out.
    [[nodiscard]] static bool opensTheSecondRow(const Person &person, const QStringList &errors)
    {
        if (!person.tabToWhatHolds(u", 1 MB, "_qs))
            return false;
        person.press(Qt::Key_Down);
        person.press(Qt::Key_Space);
        return person.sees(StaticText, errors.last()) && !person.placeOf(StaticText, errors.last()).isEmpty();
    }

    /// The item on the screen that shows exactly @p text.
    static QQuickItem *itemShowing(const Person &person, const QString &text)
    {
        QAccessibleInterface *found = person.find(StaticText, text);
        return found ? qobject_cast<QQuickItem *>(found->object()) : nullptr;
    }

    /// Asks for the export as @p kind and gives the save panel that comes up, null where none does.
    [[nodiscard]] QObject *exports(const Person &person, const QString &kind) const
    {
        const bool isAsked = person.click(Button, u"Export"_qs) && person.click(MenuItem, u"Export to "_qs + kind);
        const QObject *screen = app->mainWindow();
        for (QObject *object : screen->findChildren<QObject *>()) {
            if (isAsked && QString::fromLatin1(object->metaObject()->className()).startsWith(u"QQuickFileDialog"))
                return object->property("visible").toBool() ? object : nullptr;
        }
        return nullptr;
    }

    /// Makes the window as small as it becomes, and waits until it is.
    [[nodiscard]] bool becomesSmall() const
    {
        app->mainWindow()->resize(900, 600);
        return QTest::qWaitFor([this] { return app->mainWindow()->contentItem()->height() == 600; });
    }

    /// The number of items that are there, in sight or not.
    static qsizetype countOf(const QQuickItem &item)
    {
        qsizetype count = 1;
        for (const QQuickItem *child : item.childItems())
            count += countOf(*child);
        return count;
    }

    /// Of the texts in sight in the list, those that are lines of @p errors.
    [[nodiscard]] QStringList errorsInSight(const QStringList &errors) const
    {
        QStringList seen;
        (void)showsItem([&](const QQuickItem &item) {
            const QString text = item.property("text").toString();
            const QRectF place = item.mapRectToScene(item.boundingRect());
            if (errors.contains(text) && place.top() >= topOfRows && place.bottom() <= app->mainWindow()->height() - 25)
                seen.append(text);
            return false;
        });
        return seen;
    }

    /// Presses @p key, at most a thousand times, until the keyboard has gone on to @p row. Gives the errors that were
    /// in sight on the way.
    [[nodiscard]] QSet<QString> errorsSeenOnTheWay(const Person &person, Qt::Key key, const QString &row,
                                                   const QStringList &errors) const
    {
        QSet<QString> seen;
        for (int i = 0; i < 1000 && !person.focusedName().contains(row); ++i) {
            for (const QString &error : errorsInSight(errors))
                seen.insert(error);
            person.press(key);
            // The list comes to rest.
            QTest::qWait(20);
        }
        EXPECT_TRUE(person.focusedName().contains(row)) << person.focusedName().toStdString();
        return seen;
    }

    static double heightOnScreen(const Person &person, const QString &text)
    {
        const QQuickItem *item = itemShowing(person, text);
        return item ? item->mapToScene({0, 0}).y() : -1;
    }

    qint64 cleanedSize = 1'500'000; ///< Of the records that are added.

    static constexpr double topOfRows = 113; ///< Below the heads of the columns, in the window.
};

struct StatusCase
{
    const char *name;
    OperationStatus status;
    const char *word;
    int leastHue; ///< Degrees; -1 for a colour that is none.
    int mostHue;
};

class HistoryStatusTest : public HistoryScreenTest, public testing::WithParamInterface<StatusCase>
{
protected:
    static void expectColour(const QColor &color)
    {
        if (GetParam().leastHue < 0) {
            EXPECT_LT(color.hsvSaturationF(), 0.35F) << color.name().toStdString();
            return;
        }
        EXPECT_GT(color.hsvSaturationF(), 0.4F) << color.name().toStdString();
        EXPECT_GE(color.hsvHue(), GetParam().leastHue) << color.name().toStdString();
        EXPECT_LE(color.hsvHue(), GetParam().mostHue) << color.name().toStdString();
    }
};

} // namespace

TEST_P(HistoryStatusTest, IsSaidInAWordAndInItsColourInBothThemes)
{
    addRecord(GetParam().status);
    const Person person = open(SidebarTab::History);
    const QString word = QString::fromLatin1(GetParam().word);
    EXPECT_TRUE(person.reads(u", Safe Cleanup, 1.5 MB, "_qs + word));
    const QQuickItem *label = itemShowing(person, word);
    ASSERT_NE(label, nullptr);

    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        machine.appearance->set(scheme, true);
        expectColour(label->property("color").value<QColor>());
        // The dot before the word.
        expectColour(label->parentItem()->property("color").value<QColor>());
    }
}

INSTANTIATE_TEST_SUITE_P(Statuses, HistoryStatusTest,
                         testing::Values(StatusCase{"Completed", OperationStatus::Completed, "Completed", 90, 160},
                                         StatusCase{"Partial", OperationStatus::Partial, "Partial", 20, 45},
                                         StatusCase{"Failed", OperationStatus::Failed, "Failed", 0, 12},
                                         StatusCase{"Cancelled", OperationStatus::Cancelled, "Cancelled", -1, -1}),
                         [](const auto &info) { return info.param.name; });

TEST_F(HistoryScreenTest, ShowsTheDateWithItsMonthInLettersAndItsTimeToTheMinute)
{
    addRecord();
    const Person person = open(SidebarTab::History);

    const QString date = formatAbbreviatedDateAndTime(machine.clock->now());
    EXPECT_TRUE(person.sees(StaticText, date));
    EXPECT_TRUE(person.reads(date + u", Safe Cleanup"_qs));
    EXPECT_TRUE(date.contains(u"Nov"_qs) && date.contains(u"2026"_qs)) << date.toStdString();

    app->localizer().setLanguage(Language::Russian);
    EXPECT_TRUE(person.sees(StaticText, formatAbbreviatedDateAndTime(machine.clock->now())));
    EXPECT_TRUE(person.readsNo(u"Nov"_qs));
}

TEST_F(HistoryScreenTest, ListsEachErrorOfAnOpenRowOnALineOfItsOwn)
{
    addRecord(OperationStatus::Completed, {u"first failure"_qs, u"second failure"_qs, u"third failure"_qs});
    const Person person = open(SidebarTab::History);
    EXPECT_TRUE(person.readsNo(u"Errors:"_qs));
    EXPECT_TRUE(person.readsNo(u"first failure"_qs));

    ASSERT_TRUE(person.tabToWhatHolds(u"Completed"_qs));
    person.press(Qt::Key_Space);

    ASSERT_TRUE(person.sees(StaticText, u"Errors:"_qs));
    const QList<QString> lines
        = {u"Files Skipped: 0"_qs, u"Errors:"_qs, u"first failure"_qs, u"second failure"_qs, u"third failure"_qs};
    for (qsizetype i = 1; i < lines.size(); ++i)
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return heightOnScreen(person, lines.at(i - 1)) < heightOnScreen(person, lines.at(i));
        })) << lines.at(i).toStdString();
}

TEST_F(HistoryScreenTest, SaysNothingOfErrorsInAnOpenRowWithoutAny)
{
    addRecord();
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(person.reads(u"Completed"_qs));
    ASSERT_TRUE(person.tabToWhatHolds(u"Completed"_qs));

    person.press(Qt::Key_Space);

    EXPECT_TRUE(person.sees(StaticText, u"Files Removed: 0"_qs));
    EXPECT_TRUE(person.readsNo(u"Errors:"_qs));
    EXPECT_TRUE(person.readsNo(u"Categories affected"_qs));
}

TEST_F(HistoryScreenTest, IsOneStopForTabWhoseRowsAreReachedByArrowsHomeEndAndPageKeys)
{
    for (cleanedSize = 1'000'000; cleanedSize <= 40'000'000; cleanedSize += 1'000'000)
        addRecord();
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(person.tabToWhatHolds(u", 1 MB, "_qs));

    person.press(Qt::Key_Down);
    EXPECT_TRUE(person.focusedName().contains(u", 2 MB, "_qs)) << person.focusedName().toStdString();
    person.press(Qt::Key_End);
    EXPECT_TRUE(person.focusedName().contains(u", 40 MB, "_qs)) << person.focusedName().toStdString();
    person.press(Qt::Key_Home);
    person.press(Qt::Key_PageDown);
    const QString onePageDown = person.focusedName();
    for (const QString &near : {u", 1 MB, "_qs, u", 2 MB, "_qs, u", 40 MB, "_qs})
        EXPECT_FALSE(onePageDown.contains(near)) << onePageDown.toStdString();
    person.press(Qt::Key_PageUp);
    EXPECT_TRUE(person.focusedName().contains(u", 1 MB, "_qs)) << person.focusedName().toStdString();

    person.press(Qt::Key_Space);
    EXPECT_TRUE(person.sees(StaticText, u"Files Removed: 0"_qs));
    person.press(Qt::Key_Tab);
    EXPECT_FALSE(person.focusedName().contains(u"Safe Cleanup, "_qs)) << person.focusedName().toStdString();
}

TEST_F(HistoryScreenTest, ShowsEveryErrorOfAnOpenRowToWhoeverHasNoWheel)
{
    const QStringList errors = moreErrorsThanFit();
    addRecordsWithALongSecond(3, errors);
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(becomesSmall());
    ASSERT_TRUE(opensTheSecondRow(person, errors));

    const QSet<QString> all(errors.begin(), errors.end());
    EXPECT_EQ(errorsSeenOnTheWay(person, Qt::Key_PageDown, u", 3 MB, "_qs, errors), all);
    person.press(Qt::Key_Up);
    QTest::qWait(20);
    EXPECT_EQ(errorsSeenOnTheWay(person, Qt::Key_PageUp, u", 1 MB, "_qs, errors), all);
    person.press(Qt::Key_Down);
    EXPECT_EQ(errorsSeenOnTheWay(person, Qt::Key_Down, u", 3 MB, "_qs, errors), all);
    person.press(Qt::Key_Up);
    QTest::qWait(20);
    EXPECT_EQ(errorsSeenOnTheWay(person, Qt::Key_Up, u", 1 MB, "_qs, errors), all);
}

TEST_F(HistoryScreenTest, ComesBackToALongRowThatIsClosedFromItsMiddle)
{
    const QStringList errors = moreErrorsThanFit();
    addRecordsWithALongSecond(30, errors);
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(becomesSmall());
    ASSERT_TRUE(opensTheSecondRow(person, errors));
    const auto showsItsHead = [&] { return !errorsInSight({u"2 MB"_qs}).isEmpty(); };
    person.press(Qt::Key_PageDown);
    person.press(Qt::Key_PageDown);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !showsItsHead(); }));

    person.press(Qt::Key_Space);

    EXPECT_TRUE(QTest::qWaitFor(showsItsHead));
    EXPECT_TRUE(person.focusedName().contains(u", 2 MB, "_qs)) << person.focusedName().toStdString();
}

TEST_F(HistoryScreenTest, StaysAtTheEndsOfARowThatIsAllThereIs)
{
    const QStringList errors = moreErrorsThanFit();
    addRecord(OperationStatus::Completed, errors);
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(becomesSmall());
    ASSERT_TRUE(person.tabToWhatHolds(u"Completed"_qs));
    person.press(Qt::Key_Space);
    ASSERT_TRUE(person.sees(StaticText, errors.last()));
    ASSERT_FALSE(person.placeOf(StaticText, errors.last()).isEmpty());
    const auto shows = [&](const QString &error) {
        QTest::qWait(20);
        return errorsInSight({error}).size() == 1;
    };

    for (const Qt::Key key : {Qt::Key_End, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End}) {
        person.press(key);
        EXPECT_TRUE(shows(errors.last())) << key;
    }
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Home}) {
        person.press(key);
        EXPECT_TRUE(shows(errors.first())) << key;
    }
}

TEST_F(HistoryScreenTest, MakesNothingOfTheErrorsOfRowsThatAreClosed)
{
    QStringList errors;
    for (int i = 0; i < 2000; ++i)
        errors.append(u"error %1"_qs.arg(i));
    for (int i = 0; i < 10; ++i)
        addRecord(OperationStatus::Completed, errors);
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(person.reads(u"Completed"_qs));

    EXPECT_LT(countOf(*app->mainWindow()->contentItem()), 2000);

    ASSERT_TRUE(person.tabToWhatHolds(u"Completed"_qs));
    person.press(Qt::Key_Space);
    EXPECT_TRUE(person.sees(StaticText, u"error 1999"_qs));
}

TEST_F(HistoryScreenTest, TakesTheKeyboardToTheRowThatIsClicked)
{
    for (cleanedSize = 1'000'000; cleanedSize <= 3'000'000; cleanedSize += 1'000'000)
        addRecord();
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(person.reads(u", 2 MB, "_qs));
    const QRect row = person.placeOf([&] { return person.findWhatHolds(ListItem, u", 2 MB, "_qs); });

    QTest::mouseClick(app->mainWindow(), Qt::LeftButton, {}, row.center());

    EXPECT_TRUE(person.sees(StaticText, u"Files Removed: 0"_qs));
    EXPECT_TRUE(person.focusedName().contains(u", 2 MB, "_qs)) << person.focusedName().toStdString();
    person.press(Qt::Key_Down);
    EXPECT_TRUE(person.focusedName().contains(u", 3 MB, "_qs)) << person.focusedName().toStdString();
}

TEST_F(HistoryScreenTest, OffersToSaveTheKindOfFileThatIsExported)
{
    addRecord();
    const Person person = open(SidebarTab::History);

    for (const QString &kind : {u"CSV"_qs, u"JSON"_qs}) {
        QObject *panel = exports(person, kind);
        ASSERT_NE(panel, nullptr);
        EXPECT_EQ(panel->property("nameFilters").toStringList(),
                  QStringList(kind + u" (*."_qs + kind.toLower() + u')'));
        EXPECT_EQ(panel->property("defaultSuffix").toString(), kind.toLower());
        ASSERT_TRUE(QMetaObject::invokeMethod(panel, "reject"));
    }
}

TEST_F(HistoryScreenTest, WritesNothingWhenTheSavePanelIsCancelled)
{
    addRecord();
    const Person person = open(SidebarTab::History);
    QObject *panel = exports(person, u"CSV"_qs);
    ASSERT_NE(panel, nullptr);
    // The panel shows this machine's folders, and what it says is written to the pretended disk.
    const FilePath folder(QFile::encodeName(panel->property("currentFolder").toUrl().toLocalFile()));
    machine.files->addFolder(folder);
    const auto written = [&] { return machine.files->contains(folder.appending("Quillmere_History.csv")); };

    ASSERT_TRUE(QMetaObject::invokeMethod(panel, "reject"));
    EXPECT_FALSE(panel->property("visible").toBool());
    EXPECT_FALSE(written());

    ASSERT_EQ(exports(person, u"CSV"_qs), panel);
    ASSERT_TRUE(QMetaObject::invokeMethod(panel, "accept"));
    EXPECT_TRUE(written());
}
