#include "Services/BundleInstaller.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class BundleInstallerTest : public testing::Test
{
protected:
    BundleInstallerTest()
    {
        runFrom(FilePath("/home/ada/Downloads/Quillmere.app"));
        machine.files->addFolder(FilePath("/Applications"));
        dismissPassword();
    }

    void runFrom(const FilePath &bundle)
    {
        machine.bundles->main = bundle;
        machine.bundles->add({bundle, u"com.veltrane.quillmere"_qs, std::nullopt, u"1.3.4"_qs, u"1"_qs});
        machine.files->addFile(bundle.appending("Contents/MacOS/quillmere"), 1000, "program");
    }
    void closeApplications() { machine.files->refuse(FilePath("/Applications"), Failure::Kind::NoPermission); }
    void dismissPassword()
    {
        machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{1, {}}; });
    }
    void givePassword()
    {
        machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{0, {}}; });
    }
    [[nodiscard]] bool isProgramIn(const FilePath &bundle) const
    {
        return machine.files->contentsOfFile(bundle.appending("Contents/MacOS/quillmere")).valueOr({}) == "program";
    }
    [[nodiscard]] bool isCompleted() const { return machine.defaults->boolean(u"hasSeenWelcome"_qs); }
    std::optional<FilePath> copy()
    {
        const SetupReceipt receipt(machine.defaults, machine.bundles, machine.clock, InstallerTerms(machine.files));
        const BundleInstaller installer({machine.files, machine.places, machine.bundles, machine.processes,
                                         machine.workspace, receipt, InstallerTerms(machine.files)});
        testing::internal::CaptureStdout();
        const std::optional<FilePath> destination = installer.copyToApplications();
        printed = testing::internal::GetCapturedStdout();
        return destination;
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    std::string printed;
    const FilePath forAll = FilePath("/Applications/Quillmere.app");
    const FilePath forUser = FilePath("/home/ada/Applications/Quillmere.app");
    const FilePath terms = FilePath("/home/ada/Library/Application Support/Quillmere/"
                                    "FINAL_INSTALLATION_CONDITIONS_RULES_DISCLAIMER.md");
};

} // namespace

TEST_F(BundleInstallerTest, CopiesIntoTheFolderOfAllUsers)
{
    EXPECT_EQ(copy(), forAll);

    EXPECT_TRUE(isProgramIn(forAll));
    EXPECT_TRUE(isCompleted());
    EXPECT_EQ(machine.defaults->string(u"setup.installSignature"_qs), u"1.3.4|1"_qs);
    EXPECT_TRUE(machine.files->contains(terms));
    EXPECT_THAT(machine.processes->runs(), IsEmpty());
    EXPECT_THAT(machine.workspace->registered(), ElementsAre(forAll));
    EXPECT_EQ(printed, "");
}

TEST_F(BundleInstallerTest, ReplacesAnEarlierCopy)
{
    machine.files->addFile(forAll.appending("Contents/MacOS/old"), 10);

    EXPECT_EQ(copy(), forAll);

    EXPECT_TRUE(isProgramIn(forAll));
    EXPECT_FALSE(machine.files->contains(forAll.appending("Contents/MacOS/old")));
}

TEST_F(BundleInstallerTest, CopiesNothingThatLiesInASubfolderOfTheFolderOfAllUsers)
{
    const FilePath bundle("/Applications/Utilities/Quillmere.app");
    runFrom(bundle);

    EXPECT_EQ(copy(), bundle);

    EXPECT_FALSE(machine.files->contains(forAll));
    EXPECT_TRUE(isCompleted());
    EXPECT_TRUE(machine.files->contains(terms));
    EXPECT_THAT(machine.workspace->registered(), IsEmpty());
}

TEST_F(BundleInstallerTest, CopiesNothingWhoseWholePathBeginsWithThoseCharacters)
{
    const FilePath bundle("/Applications2/Quillmere.app");
    runFrom(bundle);

    EXPECT_EQ(copy(), bundle);

    EXPECT_FALSE(machine.files->contains(forAll));
}

TEST_F(BundleInstallerTest, CopiesNothingThatThePlatformHasInstalled)
{
    const FilePath bundle("/usr/lib/quillmere/Quillmere.app");
    runFrom(bundle);
    machine.places->addEntry(u"Installed Program"_qs, {QString(), FilePath("/usr/lib/quillmere")});

    EXPECT_EQ(copy(), bundle);

    EXPECT_FALSE(machine.files->contains(forAll));
    EXPECT_TRUE(isCompleted());
}

TEST_F(BundleInstallerTest, AsksForThePasswordWhereTheFolderOfAllUsersIsClosed)
{
    closeApplications();
    givePassword();

    EXPECT_EQ(copy(), forAll);

    EXPECT_THAT(machine.processes->runs(),
                ElementsAre(Command{u"/usr/bin/osascript"_qs,
                                    {u"-e"_qs,
                                     u"do shell script \"rm -rf '/Applications/Quillmere.app' && /usr/bin/ditto "
                                     u"'/home/ada/Downloads/Quillmere.app' '/Applications/Quillmere.app'\" with "
                                     u"administrator privileges"_qs}}));
    EXPECT_THAT(printed, testing::StartsWith("Failed to copy to global /Applications: "));
    EXPECT_TRUE(isCompleted());
    EXPECT_EQ(machine.defaults->string(u"setup.installSignature"_qs), u"1.3.4|1"_qs);
    EXPECT_TRUE(machine.files->contains(terms));
    EXPECT_THAT(machine.workspace->registered(), ElementsAre(forAll));
    EXPECT_FALSE(machine.files->contains(forUser));
}

TEST_F(BundleInstallerTest, QuotesAPathWithASingleQuoteInItForTheShell)
{
    runFrom(FilePath("/home/ada/Ada's %1 disk/Quillmere.app"));
    closeApplications();
    givePassword();

    EXPECT_EQ(copy(), forAll);

    EXPECT_EQ(machine.processes->runs().value(0).arguments.value(1),
              u"do shell script \"rm -rf '/Applications/Quillmere.app' && /usr/bin/ditto "
              u"'/home/ada/Ada'\\''s %1 disk/Quillmere.app' '/Applications/Quillmere.app'\" with administrator "
              u"privileges"_qs);
}

TEST_F(BundleInstallerTest, CopiesIntoTheUsersOwnFolderWhereThePasswordIsNotGiven)
{
    closeApplications();

    EXPECT_EQ(copy(), forUser);

    EXPECT_TRUE(isProgramIn(forUser));
    EXPECT_TRUE(isCompleted());
    EXPECT_EQ(machine.defaults->string(u"setup.installSignature"_qs), u"1.3.4|1"_qs);
    EXPECT_THAT(machine.workspace->registered(), ElementsAre(forUser));
}

TEST_F(BundleInstallerTest, CopiesIntoTheUsersOwnFolderWhereThePasswordCannotBeAskedFor)
{
    closeApplications();
    machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) {
        return Failure{Failure::Kind::NotFound, {}, u"no dialog"_qs};
    });

    EXPECT_EQ(copy(), forUser);

    EXPECT_THAT(printed, HasSubstr("Privileged install failed: no dialog\n"));
}

TEST_F(BundleInstallerTest, SaysNothingOfACopyThatFailedInAllThreeWays)
{
    closeApplications();
    machine.files->addFolder(FilePath("/home/ada/Applications"));
    machine.files->refuse(FilePath("/home/ada/Applications"), Failure::Kind::NoSpace);

    EXPECT_EQ(copy(), std::nullopt);

    EXPECT_FALSE(isCompleted());
    EXPECT_FALSE(machine.files->contains(terms));
    EXPECT_THAT(printed, HasSubstr("Failed to copy to global /Applications: "));
    EXPECT_THAT(printed, HasSubstr("Fallback copy to ~/Applications failed: "));
    EXPECT_FALSE(machine.files->contains(forUser));
}

TEST_F(BundleInstallerTest, KeepsTheBundleThatItWouldReplaceByItself)
{
    runFrom(forUser);
    closeApplications();

    EXPECT_EQ(copy(), forUser);

    EXPECT_TRUE(isProgramIn(forUser));
    EXPECT_THAT(machine.files->removed(), IsEmpty());
}

TEST_F(BundleInstallerTest, CopiesNoFolderThatIsNoBundle)
{
    runFrom(FilePath("/usr/bin"));

    EXPECT_EQ(copy(), std::nullopt);

    EXPECT_FALSE(machine.files->contains(forAll));
    EXPECT_FALSE(machine.files->contains(forUser));
    EXPECT_THAT(machine.processes->runs(), IsEmpty());
    EXPECT_THAT(printed, HasSubstr("/usr/bin"));
}
