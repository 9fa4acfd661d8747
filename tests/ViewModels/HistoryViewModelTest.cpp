#include "ViewModels/HistoryViewModel.h"
#include "Fakes/EnvironmentVariable.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/DateFormatter.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class HistoryViewModelTest : public testing::Test
{
protected:
    OperationLog save(const QDateTime &date, const QStringList &categories = {}, const QStringList &errors = {})
    {
        OperationLog log;
        log.date = date;
        log.cleanedSize = 1'500'000;
        log.filesRemoved = 3;
        log.filesSkipped = 2;
        log.categoriesAffected = categories;
        log.errors = errors;
        history.save(log);
        return log;
    }

    QString text(HistoryListModel::Role role) { return model.logs()->data(model.logs()->index(0), role).toString(); }

    InstalledLocalizer localizer;
    PretendMachine machine;
    HistoryService history{machine.files};
    HistoryViewModel model{history, machine.files};
    const QDateTime noon = QDateTime({2026, 11, 21}, {12, 0}, Qt::UTC);
    const FilePath target{"/home/ada/Documents/out.csv"};
};

} // namespace

TEST_F(HistoryViewModelTest, HoldsNothingUntilItLoads)
{
    (void)save(noon);
    EXPECT_TRUE(model.isEmpty());

    model.loadHistory();

    EXPECT_FALSE(model.isEmpty());
    EXPECT_EQ(model.logs()->rowCount(), 1);
}

TEST_F(HistoryViewModelTest, ShowsTheNewestFirst)
{
    (void)save(noon);
    const OperationLog newer = save(noon.addSecs(60));

    model.loadHistory();

    EXPECT_EQ(model.logs()->logs().first().id, newer.id);
}

TEST_F(HistoryViewModelTest, IsNotRefreshedByARecordWrittenWhileItIsOpen)
{
    model.loadHistory();
    (void)save(noon);

    EXPECT_TRUE(model.isEmpty());
}

TEST_F(HistoryViewModelTest, WritesEachRowInTheLanguageOfTheScreens)
{
    (void)save(noon, {u"User Cache"_qs, u"Something Else"_qs}, {u"first"_qs, u"second"_qs});
    model.loadHistory();

    EXPECT_EQ(text(HistoryListModel::OperationTextRole), u"Safe Cleanup"_qs);
    EXPECT_EQ(text(HistoryListModel::CleanedTextRole), u"1.5 MB"_qs);
    EXPECT_EQ(text(HistoryListModel::StatusTextRole), u"Completed"_qs);
    EXPECT_EQ(text(HistoryListModel::RemovedTextRole), u"Files Removed: 3"_qs);
    EXPECT_EQ(text(HistoryListModel::SkippedTextRole), u"Files Skipped: 2"_qs);
    EXPECT_EQ(text(HistoryListModel::CategoriesTextRole), u"Categories affected: User Cache, Something Else"_qs);
    EXPECT_EQ(model.logs()->data(model.logs()->index(0), HistoryListModel::ErrorsRole).toStringList(),
              (QStringList{u"first"_qs, u"second"_qs}));
    EXPECT_THAT(text(HistoryListModel::DateTextRole).toStdString(), testing::HasSubstr("2026"));

    localizer->setLanguage(Language::Russian);
    EXPECT_EQ(text(HistoryListModel::CleanedTextRole), u"1,5 МБ"_qs);
}

TEST_F(HistoryViewModelTest, ShowsNoCategoriesLineWithoutCategories)
{
    (void)save(noon);
    model.loadHistory();

    EXPECT_EQ(text(HistoryListModel::CategoriesTextRole), QString());
}

struct CategoryCase
{
    const char *name;
    const char *stored;
    const char *shown;
};

class StoredCategoryTest : public HistoryViewModelTest, public testing::WithParamInterface<CategoryCase>
{
};

TEST_P(StoredCategoryTest, IsShownUnderItsNameOnScreen)
{
    (void)save(noon, {QString::fromUtf8(GetParam().stored)});
    model.loadHistory();

    EXPECT_EQ(text(HistoryListModel::CategoriesTextRole).toStdString(),
              std::string("Categories affected: ") + GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Names, StoredCategoryTest,
    testing::Values(
        CategoryCase{"UserCache", "User Cache", "User Cache"}, CategoryCase{"UserLogs", "User Logs", "User Logs"},
        CategoryCase{"ContainerCache", "Container Cache", "Container Cache"},
        CategoryCase{"TemporaryFiles", "Temporary Files", "Temporary Files"},
        CategoryCase{"SystemCaches", "System Caches", "System Caches"},
        CategoryCase{"MailDownloads", "Mail Downloads", "Mail Downloads"},
        CategoryCase{"Xcode", "Xcode Build Caches", "Xcode build caches"},
        CategoryCase{"XcodeSupport", "Xcode Device Support and Archives", "Xcode device support and archives"},
        CategoryCase{"Code", "Visual Studio Code Caches", "Visual Studio Code caches"},
        CategoryCase{"JetBrains", "Android Studio and JetBrains Caches", "Android Studio and JetBrains caches"},
        CategoryCase{"Java", "Java Gradle and Maven Caches", "Java, Gradle and Maven caches"},
        CategoryCase{"Languages", "Language and Package Manager Caches", "Language and package-manager caches"},
        CategoryCase{"Android", "Android SDK Temporary Files", "Android SDK temporary files"},
        CategoryCase{"Emulators", "Smartphone Simulators and System Images", "Smartphone simulators and system images"},
        CategoryCase{"Media", "Media and Game Development Caches", "Media and game-development caches"},
        CategoryCase{"Installed", "Installed Developer Tools and SDKs",
                     "Installed developer tools, SDKs and runtimes"}),
    [](const auto &info) { return info.param.name; });

TEST_F(HistoryViewModelTest, OpensARowAndKeepsItOpenOverALoad)
{
    (void)save(noon);
    model.loadHistory();
    model.logs()->toggleExpanded(0);

    model.loadHistory();
    EXPECT_EQ(text(HistoryListModel::IsExpandedRole), u"true"_qs);
    model.logs()->toggleExpanded(0);
    EXPECT_EQ(text(HistoryListModel::IsExpandedRole), u"false"_qs);
}

TEST_F(HistoryViewModelTest, ClearsTheFileAndShowsWhatIsReallyLeft)
{
    (void)save(noon);
    model.loadHistory();

    model.clearHistory();

    EXPECT_TRUE(model.isEmpty());
    EXPECT_TRUE(history.loadHistory().isEmpty());
}

TEST_F(HistoryViewModelTest, StaysEmptyWhenThereIsNoFileToClear)
{
    model.clearHistory();

    EXPECT_TRUE(model.isEmpty());
}

TEST_F(HistoryViewModelTest, AsksForAPlaceWithTheNameOfEachKindOfExport)
{
    const QSignalSpy panels(&model, &HistoryViewModel::savePanelRequested);

    model.exportCSV();
    model.exportJSON();

    ASSERT_EQ(panels.count(), 2);
    EXPECT_EQ(panels.at(0), (QVariantList{u"Quillmere_History.csv"_qs, u"csv"_qs}));
    EXPECT_EQ(panels.at(1), (QVariantList{u"Quillmere_History.json"_qs, u"json"_qs}));
}

TEST_F(HistoryViewModelTest, WritesTheExportWhereThePanelSays)
{
    machine.files->addFolder(FilePath("/home/ada/Documents"));
    (void)save(noon);
    model.loadHistory();
    model.exportJSON();

    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));

    EXPECT_EQ(machine.files->contentsOfFile(target).valueOr({}), history.exportJSON(model.logs()->logs()).toUtf8());
}

TEST_F(HistoryViewModelTest, WritesTheLinesOfTheCsv)
{
    machine.files->addFolder(FilePath("/home/ada/Documents"));
    (void)save(noon);
    model.loadHistory();
    model.exportCSV();

    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));

    EXPECT_EQ(machine.files->contentsOfFile(target).valueOr({}), history.exportCSV(model.logs()->logs()).toUtf8());
}

TEST_F(HistoryViewModelTest, AsksBeforeItReplacesAFile)
{
    machine.files->addFile(target, 3, "old");
    const QSignalSpy questions(&model, &HistoryViewModel::replacementQuestioned);
    model.exportCSV();

    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));

    ASSERT_EQ(questions.count(), 1);
    EXPECT_EQ(questions.first().first().toString(), u"out.csv"_qs);
    EXPECT_EQ(machine.files->contentsOfFile(target).valueOr({}), "old");

    model.replaceExisting();
    EXPECT_EQ(machine.files->contentsOfFile(target).valueOr({}), history.exportCSV({}).toUtf8());
}

TEST_F(HistoryViewModelTest, ReplacesALinkAsAWholeAndLeavesWhatItLedTo)
{
    const FilePath elsewhere("/home/ada/elsewhere.csv");
    machine.files->addFile(elsewhere, 3, "old");
    machine.files->addLink(target, elsewhere);
    model.exportCSV();

    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));
    model.replaceExisting();

    EXPECT_EQ(machine.files->attributesOfItem(target).value().type, EntryKind::Regular);
    EXPECT_EQ(machine.files->contentsOfFile(elsewhere).value(), "old");
}

TEST_F(HistoryViewModelTest, ExportsWhatItShowsAndNotWhatWasRecordedSince)
{
    machine.files->addFolder(FilePath("/home/ada/Documents"));
    const OperationLog shown = save(noon);
    model.loadHistory();
    (void)save(noon.addSecs(60));

    model.exportJSON();
    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));

    EXPECT_EQ(machine.files->contentsOfFile(target).value(), history.exportJSON({shown}).toUtf8());
}

TEST_F(HistoryViewModelTest, ExportsWhatItShowedWhenItWasAskedTo)
{
    machine.files->addFolder(FilePath("/home/ada/Documents"));
    const OperationLog shown = save(noon);
    model.loadHistory();
    (void)save(noon.addSecs(60));

    model.exportCSV();
    model.loadHistory();
    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));

    EXPECT_EQ(machine.files->contentsOfFile(target).value(), history.exportCSV({shown}).toUtf8());
}

TEST_F(HistoryViewModelTest, WritesTheDatesOfTheCsvAsTheUsersRegionDoesWhateverTheScreensSpeak)
{
    const EnvironmentVariable all("LC_ALL", "de_DE.UTF-8");
    localizer->setLanguage(Language::Russian);
    machine.files->addFolder(FilePath("/home/ada/Documents"));
    (void)save(noon);
    model.loadHistory();

    model.exportCSV();
    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));

    const QString line = QString::fromUtf8(machine.files->contentsOfFile(target).value()).section(u'\n', 1, 1);
    EXPECT_TRUE(line.startsWith(ShortDateFormatter({QLocale(u"de_DE"_qs)}).format(noon) + u','));
}

TEST_F(HistoryViewModelTest, DoesNothingWithoutAPlace)
{
    model.exportCSV();
    testing::internal::CaptureStdout();

    model.save(QUrl());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(HistoryViewModelTest, PrintsALineForAPlaceThatIsNoFileOfThisMachine)
{
    model.exportCSV();
    testing::internal::CaptureStdout();

    model.save(QUrl(u"sftp://example.org/out.csv"_qs));

    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::StartsWith("Failed to write history file: "));
}

class RefusedExportTest : public HistoryViewModelTest, public testing::WithParamInterface<Failure::Kind>
{
};

TEST_P(RefusedExportTest, PrintsALineAndNothingElse)
{
    machine.files->addFolder(FilePath("/home/ada/Documents"));
    machine.files->refuse(FilePath("/home/ada/Documents"), GetParam());
    model.exportCSV();
    testing::internal::CaptureStdout();

    model.save(QUrl::fromLocalFile(u"/home/ada/Documents/out.csv"_qs));

    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::StartsWith("Failed to write history file: "));
}

INSTANTIATE_TEST_SUITE_P(Kinds, RefusedExportTest,
                         testing::Values(Failure::Kind::NoPermission, Failure::Kind::NoSpace, Failure::Kind::ReadOnly));
