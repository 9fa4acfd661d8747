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
    const char *filledWith; ///< A part of what is read once the screen has all that it shows; the same in English.
};

/// A text that can be seen, and whether all of it can.
struct ShownText
{
    QString text;
    bool isCut;
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

    [[nodiscard]] QList<ShownText> shownTexts() const
    {
        QList<ShownText> texts;
        EXPECT_TRUE(QTest::qWaitFor([this] { return !QQuickTest::qIsPolishScheduled(app->mainWindow()); }));
        (void)showsItem([&texts](const QQuickItem &item) {
            if (item.property("lineCount").isValid() && !isInPromotion(item))
                texts.append({item.property("text").toString(), isCut(item)});
            return false;
        });
        return texts;
    }

    /// What there is to read in each language.
    [[nodiscard]] QList<QList<ShownText>> textsInEachLanguage() const
    {
        QList<QList<ShownText>> texts;
        for (const Language language : {Language::Spanish, Language::Russian, Language::English}) {
            app->localizer().setLanguage(language);
            texts.append(shownTexts());
        }
        return texts;
    }

    /// Texts of no language, such as names and where things are, of which the pointer shows what is cut. In a window so
    /// high that each language has room for the same rows.
    [[nodiscard]] QSet<QString> names() const
    {
        app->mainWindow()->resize(900, 4000);
        QSet<QString> names;
        for (const QList<ShownText> &shown : textsInEachLanguage()) {
            QSet<QString> texts;
            for (const ShownText &each : shown)
                texts.insert(each.text);
            names = names.isEmpty() ? texts : names.intersect(texts);
        }
        return names;
    }

    /// All that is cut in the smallest window and no name.
    [[nodiscard]] std::string cutLabels() const
    {
        const QSet<QString> passedOver = names();
        app->mainWindow()->resize(900, 600);
        QStringList cut;
        for (const QList<ShownText> &shown : textsInEachLanguage()) {
            for (const ShownText &each : shown) {
                if (each.isCut && !passedOver.contains(each.text) && !cut.contains(each.text))
                    cut.append(each.text);
            }
        }
        return cut.join(u" | "_qs).toStdString();
    }

    void widenSidebar(const Person &person) const
    {
        const QPoint edge = person.placeOf(Grip, u"Sidebar width"_qs).center();
        QTest::mousePress(app->mainWindow(), Qt::LeftButton, {}, edge);
        QTest::mouseMove(app->mainWindow(), edge + QPoint(40, 0));
        QTest::mouseMove(app->mainWindow(), edge + QPoint(100, 0));
        QTest::mouseRelease(app->mainWindow(), Qt::LeftButton, {}, edge + QPoint(100, 0));
        const QRect widened = person.placeOf(Grip, u"Sidebar width"_qs);
        EXPECT_EQ(widened.left() + widened.width() / 2, 280);
    }
};

} // namespace

TEST_P(WholeTextsTest, CutsNoLabelInTheSmallestWindow)
{
    const Person person = open(GetParam().tab);
    if (GetParam().isScanned) {
        ASSERT_TRUE(person.sees(Button, u"Start Scan"_qs));
        EXPECT_EQ(cutLabels(), "") << "before the scan";
        ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return person.reads(QString::fromUtf8(GetParam().filledWith)); }, 30'000));

    EXPECT_EQ(cutLabels(), "");
    widenSidebar(person);
    EXPECT_EQ(cutLabels(), "") << "beside a wide sidebar";
}

INSTANTIATE_TEST_SUITE_P(Screens, WholeTextsTest,
                         testing::Values(FilledScreen{"Dashboard", SidebarTab::Dashboard, false, "Model Workshop"},
                                         FilledScreen{"SafeCleanup", SidebarTab::SafeCleanup, true, "User Cache"},
                                         FilledScreen{"ProfessionalCleanup", SidebarTab::ProfessionalCleanup, true,
                                                      "Visual Studio Code caches"},
                                         FilledScreen{"LargeFiles", SidebarTab::LargeFiles, true, "Concert.mkv"},
                                         FilledScreen{"Browsers", SidebarTab::Browsers, false, "Google Chrome"},
                                         FilledScreen{"SystemData", SidebarTab::SystemData, false, "Applications, "},
                                         FilledScreen{"Startup", SidebarTab::Startup, false, "org.example.backup"},
                                         FilledScreen{"Applications", SidebarTab::Applications, false, "Sound Studio"},
                                         FilledScreen{"Tools", SidebarTab::Tools, false, "Tools"},
                                         FilledScreen{"History", SidebarTab::History, false, "Cancelled"},
                                         FilledScreen{"Settings", SidebarTab::Settings, false, "Settings"}),
                         [](const auto &info) { return info.param.name; });
