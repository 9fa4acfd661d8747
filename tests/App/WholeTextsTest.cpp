#include "App/ScreensFixture.h"
#include "PretendProgram/PretendApplications.h"
#include "PretendProgram/PretendDesk.h"
#include "PretendProgram/PretendHome.h"
#include "PretendProgram/PretendStartup.h"
#include "PretendProgram/PretendTools.h"
#include "PretendProgram/PretendVolumes.h"
#include "Services/HistoryService.h"

#include <QSet>
#include <QTest>
#include <QtQuickTest/quicktest.h>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

struct FilledScreen
{
    const char *name;
    SidebarTab tab;
    bool isScanned; ///< Only once the user asks for it.
    const char *filledWith; ///< What is read once the screen has all that it shows: a key, or a text of no language.
};

/// The texts of a screen.
struct Reading
{
    QSet<QString> shown;
    QSet<QString> cut; ///< Those of which not all can be seen.
};

/// A text that is wider than its place and neither shortened nor wrapped is cut by what lies beside it.
bool isCut(const QQuickItem &item)
{
    return item.property("truncated").toBool() || item.property("contentWidth").toDouble() > item.width() + 1;
}

/// The promotion shows the beginning of its message, and all of it to whoever stays there.
bool isInPromotion(const QQuickItem &item)
{
    const QQuickItem *above = &item;
    while (above && !QByteArray(above->metaObject()->className()).startsWith("PromotionCard"))
        above = above->parentItem();
    return above != nullptr;
}

/// The smallest window, on a machine that is full of everything.
class WholeTextsTest : public ScreensFixture, public testing::WithParamInterface<FilledScreen>
{
protected:
    WholeTextsTest()
    {
        fillPretendHome(machine);
        fillPretendStartup(machine);
        fillPretendTools(machine);
        fillPretendApplications(machine);
        fillPretendBrowsers(machine);
        fillPretendDesk(machine, {});
        fillPretendVolumes(machine);
        // No date is written longer, in one language or another.
        for (const int month : {2, 9, 11})
            addRecordsOf({{2026, month, 28}, {22, 44, 30}});
    }

    /// Of each kind, in each state.
    void addRecordsOf(const QDateTime &date)
    {
        constexpr int kinds = RawValues<OperationType>::cases.size();
        for (int i = 0; i < kinds; ++i) {
            OperationLog log;
            log.date = date.addMSecs(i);
            log.operationType = OperationType(i);
            log.status = OperationStatus((i + date.date().month()) % 4);
            log.cleanedSize = 999'990'000'000;
            HistoryService(machine.files).save(log);
        }
    }

    /// What there is to read in that language on the screen, at all its stages and widths. The program is started in
    /// it, since some texts keep the language in which they were found.
    [[nodiscard]] Reading readIn(const QString &language)
    {
        app.reset();
        machine.defaults->setString(Localizer::languageKey(), language);
        app = std::make_unique<QuillmereApp>(machine.machine());
        const Person person = open(GetParam().tab);
        Reading reading;
        if (GetParam().isScanned) {
            EXPECT_TRUE(person.sees(Button, localized("cleanup.startScan")));
            read(reading);
            EXPECT_TRUE(person.click(Button, localized("cleanup.startScan")));
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return isFilled(person); })) << language.toStdString();
        read(reading);
        widenSidebar(person);
        read(reading);
        return reading;
    }

private:
    /// The text of that key, or what is no key as it is.
    static QString localized(const char *key) { return Localizer::shared().localized(QString::fromLatin1(key)); }

    /// What a scan tells of while it goes on is not the screen yet.
    [[nodiscard]] bool isFilled(const Person &person) const
    {
        return person.reads(localized(GetParam().filledWith)) && !showsItem([](const QQuickItem &item) {
                   return QByteArray(item.metaObject()->className()).startsWith("ProgressOverlay");
               });
    }

    /// Adds to @p reading what can be seen, and what is cut in the smallest window. What can be seen is taken from a
    /// window so high that each language has room for the same rows.
    void read(Reading &reading) const
    {
        resize(4000);
        forEachText([&reading](const QQuickItem &item) { reading.shown.insert(item.property("text").toString()); });
        resize(600);
        forEachText([&reading](const QQuickItem &item) {
            if (isCut(item))
                reading.cut.insert(item.property("text").toString());
        });
    }

    /// Makes the window as narrow as it becomes and as high as that, and waits until all in it has its place.
    void resize(int height) const
    {
        QQuickWindow *window = app->mainWindow();
        window->resize(900, height);
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return window->contentItem()->height() == height && !QQuickTest::qIsPolishScheduled(window); }));
    }

    void forEachText(const std::function<void(const QQuickItem &item)> &visit) const
    {
        (void)showsItem([&visit](const QQuickItem &item) {
            if (item.property("lineCount").isValid() && !isInPromotion(item))
                visit(item);
            return false;
        });
    }

    void widenSidebar(const Person &person) const
    {
        const QString name = localized("control.sidebarWidth");
        const QPoint edge = person.placeOf(Grip, name).center();
        QTest::mousePress(app->mainWindow(), Qt::LeftButton, {}, edge);
        QTest::mouseMove(app->mainWindow(), edge + QPoint(40, 0));
        QTest::mouseMove(app->mainWindow(), edge + QPoint(100, 0));
        QTest::mouseRelease(app->mainWindow(), Qt::LeftButton, {}, edge + QPoint(100, 0));
        const QRect widened = person.placeOf(Grip, name);
        EXPECT_EQ(widened.left() + widened.width() / 2, 280);
    }
};

} // namespace

TEST_P(WholeTextsTest, CutsNoLabelInTheSmallestWindow)
{
    const Reading readings[] = {readIn(u"en"_qs), readIn(u"es"_qs), readIn(u"ru"_qs)};

    // Names and where things are belong to no language; of these the pointer shows what is cut.
    QSet<QString> names = readings[0].shown;
    for (const Reading &reading : readings)
        names.intersect(reading.shown);
    for (const Reading &reading : readings) {
        const QStringList cut = (reading.cut - names).values();
        EXPECT_EQ(cut.join(u" | "_qs).toStdString(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Screens, WholeTextsTest,
    testing::Values(FilledScreen{"Dashboard", SidebarTab::Dashboard, false, "Model Workshop"},
                    FilledScreen{"SafeCleanup", SidebarTab::SafeCleanup, true, "cleanup.category.userCache"},
                    FilledScreen{"ProfessionalCleanup", SidebarTab::ProfessionalCleanup, true, "developer.vscode.name"},
                    FilledScreen{"LargeFiles", SidebarTab::LargeFiles, true, "largeFiles.column.lastModified"},
                    FilledScreen{"Browsers", SidebarTab::Browsers, false, "Google Chrome"},
                    FilledScreen{"SystemData", SidebarTab::SystemData, false, "systemData.documents"},
                    FilledScreen{"Startup", SidebarTab::Startup, false, "org.example.backup"},
                    FilledScreen{"Applications", SidebarTab::Applications, false, "Sound Studio"},
                    FilledScreen{"Tools", SidebarTab::Tools, false, "tools.spotlight.title"},
                    FilledScreen{"History", SidebarTab::History, false, "history.status.cancelled"},
                    FilledScreen{"Settings", SidebarTab::Settings, false, "nav.settings"}),
    [](const auto &info) { return info.param.name; });
