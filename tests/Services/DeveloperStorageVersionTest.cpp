#include "Services/DeveloperStorageFixture.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DeveloperStorageVersionTest : public DeveloperStorageFixture
{
};

struct VersionCase
{
    const char *title;
    QByteArray output;
    QString shown;
};

class DeveloperStorageOutputTest : public DeveloperStorageFixture, public testing::WithParamInterface<VersionCase>
{
};

} // namespace

TEST_F(DeveloperStorageVersionTest, AsksForAVersionWithThreeSecondsOfPatience)
{
    addProgram(FilePath("/usr/bin/java"), "openjdk version \"21.0.5\" 2026-10-15\nOpenJDK Runtime\n");

    EXPECT_THAT(inventory(), ElementsAre(u"Java — openjdk version \"21.0.5\" 2026-10-15"_qs));
    EXPECT_THAT(machine.processes->runs(), ElementsAre(Command{u"/usr/bin/java"_qs, {u"-version"_qs}}));
    EXPECT_THAT(machine.processes->patiences(), ElementsAre(3s));
}

TEST_F(DeveloperStorageVersionTest, SaysInstalledOfAProgramThatHangs)
{
    addProgram(FilePath("/usr/bin/java"));
    machine.processes->hang(u"/usr/bin/java"_qs);

    EXPECT_THAT(inventory(), ElementsAre(u"Java — installed"_qs));
}

TEST_F(DeveloperStorageVersionTest, NamesAProgramAloneThatCannotBeStarted)
{
    addProgram(FilePath("/usr/bin/java"));
    machine.processes->answer(u"/usr/bin/java"_qs, [](const Command &) {
        return Failure{Failure::Kind::NoPermission, {}, {}};
    });

    EXPECT_THAT(inventory(), ElementsAre(u"Java"_qs));
}

TEST_F(DeveloperStorageVersionTest, NamesAProgramAloneWhosePlaceCannotBeWrittenAsText)
{
    const auto files = std::make_shared<PretendFileManager>(FilePath(QByteArray("/home/a\xff")));
    machine.files = files;
    addProgram(FilePath(QByteArray("/home/a\xff/.cargo/bin/rustc")));
    ScannerService own(machine.files, machine.places);

    const std::optional<CleanupCategory> category = service().scanInstalledTools(own);

    ASSERT_TRUE(category.has_value());
    EXPECT_THAT(itemNames(*category), ElementsAre(u"Rust"_qs));
    EXPECT_THAT(machine.processes->runs(), IsEmpty());
}

TEST_F(DeveloperStorageVersionTest, IsNothingOnceItIsCancelledAmongThePrograms)
{
    addProgram(FilePath("/usr/bin/python3"));
    addProgram(FilePath("/usr/bin/php"));
    machine.processes->answer(u"/usr/bin/python3"_qs, [this](const Command &) {
        scanner.cancelScan();
        return ProcessOutcome();
    });

    EXPECT_EQ(service().scanInstalledTools(scanner), std::nullopt);
    EXPECT_EQ(machine.processes->runs().size(), 1);
}

TEST_P(DeveloperStorageOutputTest, IsTheFirstLineThatIsNotEmpty)
{
    addProgram(FilePath("/usr/bin/java"), GetParam().output);

    EXPECT_THAT(inventory(), ElementsAre(GetParam().shown));
}

INSTANTIATE_TEST_SUITE_P(Outputs, DeveloperStorageOutputTest,
                         testing::Values(VersionCase{"OneLine", "java 21\n", u"Java — java 21"_qs},
                                         VersionCase{"NoLineFeed", "java 21", u"Java — java 21"_qs},
                                         VersionCase{"EmptyLinesBefore", "\n\njava 21\nmore\n", u"Java — java 21"_qs},
                                         VersionCase{"BlanksStand", "  java 21 \n", u"Java —   java 21 "_qs},
                                         VersionCase{"Nothing", "", u"Java"_qs},
                                         VersionCase{"LineFeedsAlone", "\n\n", u"Java"_qs},
                                         VersionCase{"NotUtf8", "java \xff\xfe\n", u"Java"_qs},
                                         VersionCase{"NotUtf8Later", "java 21\n\xff", u"Java"_qs},
                                         VersionCase{"CutInACharacter", "java \xe2\x80", u"Java"_qs},
                                         VersionCase{"ManyBytes", "java é 日本\n", u"Java — java é 日本"_qs}),
                         [](const auto &info) { return info.param.title; });
