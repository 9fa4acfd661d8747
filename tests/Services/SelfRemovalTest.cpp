#include "Services/SelfRemoval.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class SelfRemovalTest : public testing::Test
{
protected:
    void addData() const
    {
        for (const FilePath &item : data)
            machine.files->addFile(item, 10);
    }
    [[nodiscard]] static SelfRemoval removalFrom(const PretendMachine &machine)
    {
        return SelfRemoval({machine.files, machine.places, machine.bundles, machine.processes, machine.workspace});
    }
    [[nodiscard]] QByteArray writtenScript() const { return machine.files->contentsOfFile(script).valueOr("none"); }

    InstalledLocalizer localizer;
    PretendMachine machine;
    SelfRemoval removal = removalFrom(machine);
    const FilePath home = FilePath("/home/ada");
    const FilePath script = FilePath("/tmp/uninstall.sh");
    const QList<FilePath> data = {
        home.appending("Library/Application Support/Quillmere"),
        home.appending("Library/Caches/com.veltrane.quillmere"),
        home.appending("Library/Caches/Quillmere"),
        home.appending("Library/Preferences/com.veltrane.quillmere.plist"),
    };
    const Command launched = {u"/bin/bash"_qs, {u"/tmp/uninstall.sh"_qs}};

    void SetUp() override { machine.files->addFolder(FilePath("/tmp")); }
};

} // namespace

TEST_F(SelfRemovalTest, DeletesTheDataInOrderAndLeavesTheBundleToAScript)
{
    addData();

    removal.run();

    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data));
    EXPECT_EQ(writtenScript(), "sleep 1\nrm -rf \"/Applications/Quillmere.app\"");
    EXPECT_THAT(machine.processes->launches(), ElementsAre(launched));
}

TEST_F(SelfRemovalTest, GoesOnToTheNextWhereAnyOfThemIsAbsent)
{
    for (const FilePath &absent : data) {
        const PretendMachine other;
        other.files->addFolder(FilePath("/tmp"));
        QList<FilePath> present = data;
        present.removeOne(absent);
        for (const FilePath &item : present)
            other.files->addFile(item, 10);

        removalFrom(other).run();

        EXPECT_THAT(other.files->removed(), ElementsAreArray(present));
        EXPECT_THAT(other.processes->launches(), ElementsAre(launched));
    }
}

TEST_F(SelfRemovalTest, GoesOnToTheNextWhereOneCannotBeDeleted)
{
    addData();
    machine.files->refuse(data.first(), Failure::Kind::NoPermission);

    removal.run();

    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data.sliced(1)));
    EXPECT_THAT(machine.processes->launches(), ElementsAre(launched));
}

TEST_F(SelfRemovalTest, DeletesWhatThePlatformAddsBehindTheProgramsOwn)
{
    addData();
    const FilePath compiled("/home/ada/.cache/Quillmere");
    machine.files->addFile(compiled, 10);
    machine.places->addEntry(u"Self Removal"_qs, {QString(), compiled});

    removal.run();

    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data + QList<FilePath>{compiled}));
}

TEST_F(SelfRemovalTest, HasTheDesktopForgetTheCopyThatGoesAndNoOther)
{
    const FilePath other("/home/ada/Applications/Quillmere.app");
    for (const FilePath &bundle : {machine.bundles->main, other})
        ASSERT_TRUE(machine.workspace->registerApplication(bundle));

    removal.run();

    EXPECT_THAT(machine.workspace->registered(), ElementsAre(other));
}

TEST_F(SelfRemovalTest, WorksInAHomeThatIsALink)
{
    const auto files = std::make_shared<PretendFileManager>(FilePath("/home/link"));
    files->vanish(FilePath("/home/link"));
    files->addFolder(FilePath("/tmp"));
    files->addFile(FilePath("/disk/ada/Library/Preferences/com.veltrane.quillmere.plist"), 10);
    files->addLink(FilePath("/home/link"), FilePath("/disk/ada"));

    SelfRemoval({files, machine.places, machine.bundles, machine.processes, machine.workspace}).run();

    EXPECT_THAT(files->removed(), ElementsAre(FilePath("/disk/ada/Library/Preferences/com.veltrane.quillmere.plist")));
}

TEST_F(SelfRemovalTest, PutsThePathBetweenDoubleQuotesAsItStands)
{
    machine.bundles->main = FilePath("/home/ada/it's (my) *; & own/Quillmere.app");

    removal.run();

    EXPECT_EQ(writtenScript(), "sleep 1\nrm -rf \"/home/ada/it's (my) *; & own/Quillmere.app\"");
    EXPECT_THAT(machine.processes->launches(), ElementsAre(launched));
}

TEST_F(SelfRemovalTest, LeavesABundleToNoScriptThatWouldMisreadItsPathAndSaysSo)
{
    for (const char *folder : {"a\" \"b", "$HOME", "$(touch x)", "`touch x`", "a\\", "a\nb"}) {
        const PretendMachine other;
        other.files->addFolder(FilePath("/tmp"));
        for (const FilePath &item : data)
            other.files->addFile(item, 10);
        other.bundles->main = home.appending(folder).appending("Quillmere.app");

        testing::internal::CaptureStdout();
        removalFrom(other).run();

        EXPECT_THAT(testing::internal::GetCapturedStdout(),
                    StartsWith("Not removed, because a script could not name it safely: /home/ada/"))
            << folder;
        EXPECT_THAT(other.files->removed(), ElementsAreArray(data)) << folder;
        EXPECT_FALSE(other.files->contains(script)) << folder;
        EXPECT_THAT(other.processes->launches(), IsEmpty()) << folder;
    }
}

TEST_F(SelfRemovalTest, LaunchesTheScriptAlsoWhenItCouldNotBeWritten)
{
    machine.files->addFile(script, 4, "left");
    machine.files->refuse(script, Failure::Kind::NoSpace);

    removal.run();

    EXPECT_EQ(writtenScript(), "left");
    EXPECT_THAT(machine.processes->launches(), ElementsAre(launched));
}

TEST_F(SelfRemovalTest, RunsNoScriptThatAnotherUserHasPutThere)
{
    addData();
    machine.files->addFile(script, 4, "evil");
    machine.files->giveAway(script);
    machine.files->refuse(script, Failure::Kind::NoPermission);

    removal.run();

    EXPECT_THAT(machine.processes->launches(), IsEmpty());
    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data));
}

TEST_F(SelfRemovalTest, FollowsNoLinkToAScript)
{
    machine.files->addFile(FilePath("/home/eve/evil.sh"), 4, "evil");
    machine.files->addLink(script, FilePath("/home/eve/evil.sh"));
    machine.files->refuse(script, Failure::Kind::NoPermission);

    removal.run();

    EXPECT_THAT(machine.processes->launches(), IsEmpty());
}

TEST_F(SelfRemovalTest, LaunchesTheScriptAlsoWhereNothingStandsOfIt)
{
    addData();
    machine.files->refuse(script.deletingLastPathComponent(), Failure::Kind::NoSpace);

    removal.run();

    EXPECT_FALSE(machine.files->contains(script));
    EXPECT_THAT(machine.processes->launches(), ElementsAre(launched));
    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data));
}

TEST_F(SelfRemovalTest, PrintsOneLineWhenTheScriptCannotBeLaunched)
{
    addData();
    machine.processes->answer(u"/bin/bash"_qs, [](const Command &) {
        return Failure{Failure::Kind::NotFound, {}, u"no bash"_qs};
    });

    testing::internal::CaptureStdout();
    removal.run();

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to run self-uninstall background process: no bash\n");
    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data));
}

TEST_F(SelfRemovalTest, LeavesTheFolderAloneThatAProgramOutsideABundleLiesIn)
{
    addData();
    machine.bundles->main = FilePath("/usr/bin");

    removal.run();

    EXPECT_THAT(machine.processes->launches(), IsEmpty());
    EXPECT_FALSE(machine.files->contains(script));
    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data));
}

TEST_F(SelfRemovalTest, DoesTheSameASecondTime)
{
    addData();

    removal.run();
    removal.run();

    EXPECT_THAT(machine.files->removed(), ElementsAreArray(data));
    EXPECT_THAT(machine.processes->launches(), ElementsAre(launched, launched));
}
