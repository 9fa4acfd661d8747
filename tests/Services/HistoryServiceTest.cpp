#include "Services/HistoryService.h"

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Services/OperationLogCoding.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const FilePath folder("/home/ada/Library/Application Support/Quillmere");
const FilePath file = folder.appending("history.json");
const DateStyle american = {QLocale(u"en_US"_qs), QTimeZone::utc()};
const DateStyle german = {QLocale(u"de_DE"_qs), QTimeZone::utc()};

OperationLog logAt(int day, qint64 cleanedSize = 0)
{
    OperationLog log;
    log.date = QDateTime({2026, 1, day}, {15, 4, 5}, Qt::UTC);
    log.cleanedSize = cleanedSize;
    return log;
}

OperationLog fullLog()
{
    OperationLog log;
    log.id = QUuid(u"{6ba7b810-9dad-11d1-80b4-00c04fd430c8}"_qs);
    log.date = QDateTime({2024, 1, 2}, {0, 0, 0, 250}, Qt::UTC);
    log.operationType = OperationType::BrowserCleanup;
    log.foundSize = 9'000'000'000;
    log.cleanedSize = 8'000'000'000;
    log.filesRemoved = 12;
    log.filesSkipped = 3;
    log.errors = {u"/home/ada/a: \"no\""_qs};
    log.categoriesAffected = {u"User Cache"_qs, u"User Logs"_qs};
    log.status = OperationStatus::Partial;
    return log;
}

const QByteArray fullLogJson
    = R"({"id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8","date":725846400.25,"operationType":"browserCleanup",)"
      R"("foundSize":9000000000,"cleanedSize":8000000000,"filesRemoved":12,"filesSkipped":3,)"
      R"("errors":["\/home\/ada\/a: \"no\""],"categoriesAffected":["User Cache","User Logs"],"status":"partial"})";

/// What @p action prints.
template<typename Action>
std::string printed(const Action &action)
{
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

} // namespace

class HistoryServiceTest : public testing::Test
{
protected:
    QList<OperationLog> loadedFrom(const QByteArray &contents)
    {
        machine.files->addFile(file, contents.size(), contents);
        return history.loadHistory();
    }

    QByteArray contents() const { return machine.files->contentsOfFile(file).valueOr("nothing"); }

    PretendMachine machine;
    HistoryService history{machine.files};
};

TEST_F(HistoryServiceTest, StopsTheProgramWhereThereIsNoApplicationSupportFolder)
{
    machine.files->setHome(FilePath());

    EXPECT_DEATH((void)HistoryService(machine.files).loadHistory(), "no Application Support folder");
}

TEST_F(HistoryServiceTest, IsReachedThroughItsSharedInstance)
{
    SharedInstance<HistoryService>::install(&history);

    EXPECT_EQ(&HistoryService::shared(), &history);
    SharedInstance<HistoryService>::install(nullptr);
}

TEST_F(HistoryServiceTest, LoadsNothingWithoutAFileButMakesTheFolder)
{
    EXPECT_TRUE(history.loadHistory().isEmpty());
    EXPECT_TRUE(machine.files->contains(folder));
    EXPECT_FALSE(machine.files->contains(file));
}

TEST_F(HistoryServiceTest, WritesARecordWithItsFieldsUnderTheirNames)
{
    history.save(fullLog());

    EXPECT_EQ(contents(), '[' + fullLogJson + ']');
}

TEST_F(HistoryServiceTest, BringsARecordBackWhole)
{
    history.save(fullLog());

    EXPECT_EQ(history.loadHistory(), QList{fullLog()});
}

TEST_F(HistoryServiceTest, LoadsTheNewestFirst)
{
    for (int day : {2, 3, 1})
        history.save(logAt(day));

    const QList<OperationLog> logs = history.loadHistory();

    ASSERT_EQ(logs.size(), 3);
    EXPECT_EQ(logs[0].date.date().day(), 3);
    EXPECT_EQ(logs[1].date.date().day(), 2);
    EXPECT_EQ(logs[2].date.date().day(), 1);
}

TEST_F(HistoryServiceTest, KeepsRecordsOfTheSameDateInTheOrderOfTheFile)
{
    // Enough of them that a sort which is not stable would show.
    QList<OperationLog> older;
    QList<OperationLog> newer;
    QList<OperationLog> mixed;
    for (int number = 0; number < 100; ++number) {
        older.append(logAt(1, number));
        newer.append(logAt(2, number));
        mixed << older.last() << newer.last();
    }

    EXPECT_EQ(loadedFrom(encodeOperationLogs(mixed).value()), newer + older);
}

TEST_F(HistoryServiceTest, PutsANewRecordLastInTheFileAndFirstOnTheScreen)
{
    const OperationLog older = logAt(1);
    const OperationLog old = logAt(2);
    const OperationLog newest = logAt(3);
    for (const OperationLog &log : {older, old, newest})
        history.save(log);

    EXPECT_EQ(decodeOperationLogs(contents()).value(), (QList{old, older, newest}));
    EXPECT_EQ(history.loadHistory().first(), newest);
}

TEST_F(HistoryServiceTest, LoadsAnObjectAsEmptyAndLeavesTheFile)
{
    EXPECT_TRUE(loadedFrom("{}").isEmpty());
    EXPECT_EQ(contents(), "{}");
}

TEST_F(HistoryServiceTest, LoadsAnArrayWithOneRecordLackingAnyOneFieldAsEmpty)
{
    for (const char *key : {"id", "date", "operationType", "foundSize", "cleanedSize", "filesRemoved", "filesSkipped",
                            "errors", "categoriesAffected", "status"}) {
        QByteArray lacking = fullLogJson;
        lacking.replace(QByteArray("\"") + key + "\":", "\"other\":");
        ASSERT_NE(lacking, fullLogJson);

        EXPECT_TRUE(loadedFrom('[' + fullLogJson + ',' + lacking + ']').isEmpty()) << key;
    }
    EXPECT_EQ(loadedFrom('[' + fullLogJson + ',' + fullLogJson + ']').size(), 2);
}

struct FieldCase
{
    const char *name;
    const char *before;
    const char *after;
    bool isAccepted;
};

class HistoryFieldTest : public testing::TestWithParam<FieldCase>
{
};

TEST_P(HistoryFieldTest, DecidesOverTheWholeFile)
{
    QByteArray record = fullLogJson;
    record.replace(GetParam().before, GetParam().after);
    ASSERT_NE(record, fullLogJson);

    EXPECT_EQ(decodeOperationLogs('[' + record + ']').isOk(), GetParam().isAccepted);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, HistoryFieldTest,
    testing::Values(FieldCase{"UnknownType", "browserCleanup", "trash", false},
                    FieldCase{"UnknownStatus", "\"partial\"", "\"done\"", false},
                    FieldCase{"TypeInOtherCase", "browserCleanup", "BrowserCleanup", false},
                    FieldCase{"DateAsText", "725846400.25", "\"2024-01-02T00:00:00Z\"", false},
                    FieldCase{"DateAsNull", "725846400.25", "null", false},
                    FieldCase{"DateAsInteger", "725846400.25", "725846400", true},
                    FieldCase{"DateWithExponent", "725846400.25", "7.2584640025e+08", true},
                    FieldCase{"SizeAsText", "9000000000", "\"9000000000\"", false},
                    FieldCase{"SizeWithFraction", "9000000000", "9000000000.5", false},
                    FieldCase{"SizeWithEmptyFraction", "9000000000", "9000000000.0", true},
                    FieldCase{"SizeBeyondSixtyFourBits", "9000000000", "9223372036854775808", false},
                    FieldCase{"CountAsBoolean", "\"filesRemoved\":12", "\"filesRemoved\":true", false},
                    FieldCase{"NumberAmongErrors", "\"errors\":[", "\"errors\":[1,", false},
                    FieldCase{"NullForCategories", "[\"User Cache\",\"User Logs\"]", "null", false},
                    FieldCase{"LowerCaseIdentity", "6BA7B810-9DAD", "6ba7b810-9dad", true},
                    FieldCase{"ShortIdentity", "6BA7B810-9DAD", "6BA7B8109DAD", false},
                    FieldCase{"UnknownField", "{\"id\"", "{\"note\":\"x\",\"id\"", true},
                    FieldCase{"TrailingComma", "\"status\":\"partial\"", "\"status\":\"partial\",", true}),
    [](const auto &info) { return info.param.name; });

TEST_F(HistoryServiceTest, LoadsAFileCutShortAtAnyByteAsEmpty)
{
    const QByteArray whole = encodeOperationLogs({fullLog(), logAt(1), logAt(2)}).value();
    ASSERT_EQ(loadedFrom(whole).size(), 3);

    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_TRUE(loadedFrom(whole.first(length)).isEmpty()) << length;
}

TEST_F(HistoryServiceTest, LoadsAnUnreadableFileAsEmpty)
{
    history.save(logAt(1));
    machine.files->lock(file);

    EXPECT_TRUE(history.loadHistory().isEmpty());
}

TEST_F(HistoryServiceTest, WritesTheNextRecordOverADamagedFile)
{
    machine.files->addFile(file, 2, "{}");
    const OperationLog log = logAt(1);

    EXPECT_EQ(printed([&] { history.save(log); }), "");

    EXPECT_EQ(history.loadHistory(), QList{log});
}

TEST_F(HistoryServiceTest, MakesTheFolderAnewWhenItWasRemoved)
{
    history.save(logAt(1));
    machine.files->vanish(folder);
    const OperationLog log = logAt(2);

    history.save(log);

    EXPECT_EQ(history.loadHistory(), QList{log});
}

TEST_F(HistoryServiceTest, WritesThroughALinkInPlace)
{
    const FilePath elsewhere("/home/ada/elsewhere.json");
    machine.files->addFile(elsewhere, 2, "[]");
    machine.files->addLink(file, elsewhere);

    history.save(fullLog());

    EXPECT_EQ(machine.files->contentsOfFile(elsewhere).value(), '[' + fullLogJson + ']');
    EXPECT_EQ(machine.files->attributesOfItem(file).value().type, EntryKind::SymbolicLink);
}

TEST_F(HistoryServiceTest, PrintsOneLineWhenTheFileCannotBeWritten)
{
    history.save(logAt(1));
    machine.files->refuse(file, Failure::Kind::NoSpace);

    const std::string line = printed([&] { history.save(logAt(2)); });

    EXPECT_TRUE(line.starts_with("Failed to save history: ")) << line;
    EXPECT_EQ(std::ranges::count(line, '\n'), 1);
    EXPECT_GT(line.size(), std::string("Failed to save history: \n").size());
    EXPECT_EQ(history.loadHistory().size(), 1);
}

TEST_F(HistoryServiceTest, PrintsOneLineWhenTheFolderCannotBeMade)
{
    machine.files->addFolder(FilePath("/home/ada/Library/Application Support"));
    machine.files->refuse(FilePath("/home/ada/Library/Application Support"), Failure::Kind::NoPermission);

    const std::string line = printed([&] { history.save(logAt(1)); });

    EXPECT_TRUE(line.starts_with("Failed to save history: ")) << line;
    EXPECT_TRUE(history.loadHistory().isEmpty());
}

TEST_F(HistoryServiceTest, PrintsOneLineAndKeepsTheFileWhenTheRecordCannotBeEncoded)
{
    history.save(logAt(1));
    OperationLog undated = logAt(2);
    undated.date = QDateTime();

    const std::string line = printed([&] { history.save(undated); });

    EXPECT_TRUE(line.starts_with("Failed to save history: ")) << line;
    EXPECT_EQ(history.loadHistory().size(), 1);
}

TEST_F(HistoryServiceTest, ClearsTheFileAndNothingElse)
{
    history.save(logAt(1));
    machine.files->addFile(folder.appending("other"), 1);

    history.clearHistory();
    history.clearHistory();

    EXPECT_FALSE(machine.files->contains(file));
    EXPECT_TRUE(machine.files->contains(folder.appending("other")));
    EXPECT_EQ(machine.files->removed(), QList{file});
    EXPECT_TRUE(history.loadHistory().isEmpty());
}

TEST_F(HistoryServiceTest, ClearsTheFileBehindALinkOnTheWay)
{
    machine.files->addFolder(FilePath("/data/Library"));
    machine.files->addLink(FilePath("/home/ada/Library"), FilePath("/data/Library"));
    OperationLog log;
    log.date = machine.clock->now();
    history.save(log);
    ASSERT_EQ(history.loadHistory().size(), 1);

    history.clearHistory();

    EXPECT_TRUE(history.loadHistory().isEmpty());
}

TEST_F(HistoryServiceTest, ClearsNothingWhereThereIsNoFile)
{
    EXPECT_EQ(printed([&] { history.clearHistory(); }), "");
    EXPECT_TRUE(history.loadHistory().isEmpty());
}

TEST_F(HistoryServiceTest, ShowsWhatIsLeftWhenTheFileCannotBeDeleted)
{
    history.save(logAt(1));
    machine.files->refuse(file, Failure::Kind::NoPermission);

    EXPECT_EQ(printed([&] { history.clearHistory(); }), "");

    EXPECT_EQ(history.loadHistory().size(), 1);
}

TEST_F(HistoryServiceTest, ExportsNothingAsTheHeaderAloneAndAsAnEmptyArray)
{
    EXPECT_EQ(history.exportCSV({}, american),
              u"Date,Type,Found Size,Cleaned Size,Files Removed,Files Skipped,Status\n"_qs);
    EXPECT_EQ(history.exportJSON({}), u"[]"_qs);
}

TEST_F(HistoryServiceTest, ExportsALineForEachRecordInTheGivenOrder)
{
    const QString text = history.exportCSV({fullLog(), logAt(2, 5)}, german);

    EXPECT_EQ(text,
              u"Date,Type,Found Size,Cleaned Size,Files Removed,Files Skipped,Status\n"
              "02.01.24, 00:00,Browser Cleanup,9000000000,8000000000,12,3,partial\n"
              "02.01.26, 15:04,Safe Cleanup,0,5,0,0,completed\n"_qs);
}

TEST_F(HistoryServiceTest, LetsTheDateAddACommaOfItsOwnInAnEnglishLocale)
{
    const QStringList lines = history.exportCSV({logAt(2)}, american).split(u'\n');

    EXPECT_TRUE(lines[1].startsWith(u"1/2/26, 3:04\u202FPM,Safe Cleanup,"_qs));
    EXPECT_EQ(lines[1].count(u','), lines[0].count(u',') + 1);
    EXPECT_FALSE(lines[1].contains(u'"'));
}

TEST_F(HistoryServiceTest, LetsTheDateAddNoCommaWhereALocaleHasNone)
{
    const QStringList lines = history.exportCSV({logAt(2)}, {QLocale(u"fr_FR"_qs), QTimeZone::utc()}).split(u'\n');

    EXPECT_TRUE(lines[1].startsWith(u"02/01/2026 15:04,Safe Cleanup,"_qs));
    EXPECT_EQ(lines[1].count(u','), lines[0].count(u','));
}

TEST_F(HistoryServiceTest, NamesEveryTypeInEnglishAndEveryStatusByItsStoredText)
{
    const QStringList labels = {
        u"Safe Scan"_qs,        u"Safe Cleanup"_qs, u"Browser Scan"_qs,    u"Browser Cleanup"_qs,
        u"Large Files Scan"_qs, u"Startup Scan"_qs, u"Spotlight Reset"_qs, u"Full Scan"_qs,
    };
    const QList<OperationType> types = allCases<OperationType>();
    ASSERT_EQ(types.size(), labels.size());
    for (qsizetype index = 0; index < types.size(); ++index) {
        OperationLog log = logAt(1);
        log.operationType = types[index];
        EXPECT_TRUE(history.exportCSV({log}, american).contains(u',' + labels[index] + u','));
    }

    const QStringList statuses = {u"completed"_qs, u"partial"_qs, u"failed"_qs, u"cancelled"_qs};
    for (const QString &status : statuses) {
        OperationLog log = logAt(1);
        log.status = *fromRawValue<OperationStatus>(status);
        EXPECT_TRUE(history.exportCSV({log}, american).endsWith(u",0,0,0,0,"_qs + status + u'\n'));
    }
}

TEST_F(HistoryServiceTest, StoresEveryTypeByANameThatFindsItsText)
{
    const QStringList names = {
        u"safeScan"_qs,       u"safeCleanup"_qs, u"browserScan"_qs,    u"browserCleanup"_qs,
        u"largeFilesScan"_qs, u"startupScan"_qs, u"spotlightReset"_qs, u"fullScan"_qs,
    };
    const QStringList texts = {
        u"Safe Scan"_qs,        u"Safe Cleanup"_qs, u"Browser Scan"_qs,    u"Browser Cleanup"_qs,
        u"Large Files Scan"_qs, u"Startup Scan"_qs, u"Spotlight Reset"_qs, u"Full Scan"_qs,
    };
    const InstalledLocalizer localizer;
    const QList<OperationType> types = allCases<OperationType>();
    ASSERT_EQ(types.size(), names.size());
    for (qsizetype index = 0; index < types.size(); ++index) {
        EXPECT_EQ(rawValue(types[index]), names[index]);
        EXPECT_EQ(localized(u"history.operation."_qs + names[index]), texts[index]);
    }
}

TEST_F(HistoryServiceTest, ExportsJsonAsInTheFileInTheGivenOrder)
{
    const QList<OperationLog> logs = {logAt(1), fullLog(), logAt(2)};

    const QString text = history.exportJSON(logs);

    EXPECT_TRUE(text.toUtf8().contains(fullLogJson));
    EXPECT_EQ(decodeOperationLogs(text.toUtf8()).value(), logs);
}

TEST_F(HistoryServiceTest, ExportsAnEmptyArrayWhenARecordCannotBeEncoded)
{
    OperationLog undated;

    EXPECT_EQ(history.exportJSON({undated}), u"[]"_qs);
}

TEST_F(HistoryServiceTest, ReadsAnAccountOfSeveralHundredRuns)
{
    for (int run = 0; run < 300; ++run)
        history.save(logAt(1 + run % 28, run));

    const QList<OperationLog> logs = history.loadHistory();

    EXPECT_EQ(logs.size(), 300);
    EXPECT_TRUE(std::ranges::is_sorted(logs, std::ranges::greater(), &OperationLog::date));
}
