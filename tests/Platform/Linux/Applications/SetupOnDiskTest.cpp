#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Applications/LinuxBundles.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Desktop/LinuxWorkspace.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Files/LinuxUserDefaults.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/Programs/LinuxProcessRunner.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/BundleInstaller.h"
#include "Services/SelfRemoval.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include <sys/stat.h>

using namespace Quillmere;
using testing::IsEmpty;

namespace {

/// The program's own bundle on the real disk, set up and removed there. All of it lies in a folder of the test's own.
class SetupOnDiskTest : public testing::Test
{
protected:
    SetupOnDiskTest()
    {
        home.addFolder("tmp");
        UserEnvironment environment = home.environment();
        environment.temporary = home.path("tmp");
        files = std::make_shared<LinuxFileManager>(environment);
        places = std::make_shared<LinuxPlaces>(
            files, [](const char *) { return QByteArray(); }, PlacesData::builtIn());
    }

    /// A bundle whose program lies in @p folder.
    FilePath addBundle(const QByteArray &folder)
    {
        const QByteArray bundle = folder + "/Quillmere.app";
        home.addFile(bundle + "/Contents/Info.plist",
                     "<plist version=\"1.0\"><dict><key>CFBundleShortVersionString</key><string>1.3.4</string>"
                     "<key>CFBundleIdentifier</key><string>com.veltrane.quillmere</string>"
                     "<key>CFBundleExecutable</key><string>quillmere</string>"
                     "<key>CFBundleVersion</key><string>1</string></dict></plist>");
        const FilePath program = home.addFile(bundle + "/Contents/MacOS/quillmere", "program");
        ::chmod(program.bytes().constData(), 0755);
        home.addFile(bundle + "/Contents/Resources/app_logo.png", "picture");
        return home.path(bundle);
    }
    void addData() const
    {
        for (const char *file :
             {"home/Library/Application Support/Quillmere/history.json",
              "home/Library/Caches/com.veltrane.quillmere/data", "home/Library/Caches/Quillmere/data",
              "home/Library/Preferences/com.veltrane.quillmere.plist", "home/.cache/Quillmere/compiled"})
            home.addFile(file);
        home.addFile("home/Library/Preferences/org.example.other.plist");
        home.addFile("home/.local/share/applications/other.desktop");
    }
    [[nodiscard]] static std::shared_ptr<LinuxBundles> bundlesOf(const FilePath &bundle)
    {
        return std::make_shared<LinuxBundles>(bundle.appending("Contents/MacOS/quillmere"));
    }
    void remove(const FilePath &bundle) const
    {
        SelfRemoval({files, places, bundlesOf(bundle), processes, workspace}).run();
    }
    [[nodiscard]] SetupReceipt receiptOf(const FilePath &bundle) const
    {
        const auto defaults = std::make_shared<LinuxUserDefaults>(LinuxUserDefaults::fileOf(home.path("home")));
        return SetupReceipt(defaults, bundlesOf(bundle), std::make_shared<PretendClock>(), InstallerTerms(files));
    }
    /// Sets up from @p bundle. Not for root, who could write into the folder of all users.
    [[nodiscard]] std::optional<FilePath> install(const FilePath &bundle) const
    {
        return BundleInstaller({files, places, bundlesOf(bundle), processes, std::make_shared<PretendWorkspace>(),
                                receiptOf(bundle), InstallerTerms(files)})
            .copyToApplications();
    }
    static bool goes(const FilePath &item)
    {
        for (int i = 0; i < 300 && itemExists(item); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return !itemExists(item);
    }

    InstalledLocalizer localizer;
    TemporaryHome home;
    std::shared_ptr<LinuxFileManager> files;
    std::shared_ptr<LinuxPlaces> places;
    std::shared_ptr<LinuxProcessRunner> processes = std::make_shared<LinuxProcessRunner>(home.path("no helpers"));
    std::shared_ptr<LinuxWorkspace> workspace = std::make_shared<LinuxWorkspace>(
        home.path("home"), QList<FilePath>{home.path("home/.local/share/applications")});
};

} // namespace

TEST_F(SetupOnDiskTest, RemovesAllThatIsTheProgramsAndNothingElse)
{
    addData();
    const FilePath bundle = addBundle("home/Applications");
    ASSERT_TRUE(workspace->registerApplication(bundle));
    home.addFile("home/Applications/Other.app/Contents/Info.plist");

    remove(bundle);

    EXPECT_TRUE(goes(bundle));
    EXPECT_THAT(home.names("home/Library/Application Support"), IsEmpty());
    EXPECT_THAT(home.names("home/Library/Caches"), IsEmpty());
    EXPECT_EQ(home.names("home/Library/Preferences"), QList<QByteArray>{"org.example.other.plist"});
    EXPECT_EQ(home.names("home/.local/share/applications"), QList<QByteArray>{"other.desktop"});
    EXPECT_THAT(home.names("home/.local/share/icons/hicolor/512x512/apps"), IsEmpty());
    EXPECT_FALSE(home.exists("home/.cache/Quillmere"));
    EXPECT_EQ(home.names("home/Applications"), QList<QByteArray>{"Other.app"});
    EXPECT_EQ(home.contents("tmp/uninstall.sh"), "sleep 1\nrm -rf \"" + bundle.bytes() + "\"");
}

TEST_F(SetupOnDiskTest, LeavesTheEntryOfTheInstalledCopyWhereAnotherOneGoes)
{
    const FilePath installed = addBundle("home/Applications");
    ASSERT_TRUE(workspace->registerApplication(installed));
    const FilePath stray = addBundle("home/Downloads");

    remove(stray);

    EXPECT_TRUE(goes(stray));
    EXPECT_TRUE(itemExists(installed));
    EXPECT_EQ(home.names("home/.local/share/applications"), QList<QByteArray>{"com.veltrane.quillmere.desktop"});
    EXPECT_EQ(home.names("home/.local/share/icons/hicolor/512x512/apps"),
              QList<QByteArray>{"com.veltrane.quillmere.png"});
}

TEST_F(SetupOnDiskTest, RemovesABundleWhosePathHoldsBlanksAndSingleQuotes)
{
    const FilePath bundle = addBundle("home/Ada's own programs");

    remove(bundle);

    EXPECT_TRUE(goes(bundle));
    EXPECT_TRUE(home.exists("home/Ada's own programs"));
}

TEST_F(SetupOnDiskTest, LeavesABundleBehindWhosePathAScriptWouldTakeForTwo)
{
    const FilePath bundle = addBundle("home/a\" \"b");
    home.addFile("home/a/of somebody else");
    const FilePath other = addBundle("home/other");

    remove(bundle);
    // Begun later and gone: a script for the first would have had its time as well.
    remove(other);

    EXPECT_TRUE(goes(other));
    EXPECT_TRUE(itemExists(bundle));
    EXPECT_TRUE(home.exists("home/a/of somebody else"));
}

TEST_F(SetupOnDiskTest, CopiesTheBundleForTheUserAndReplacesAnEarlierOne)
{
    const FilePath bundle = addBundle("home/Downloads");
    home.addFile("home/Applications/Quillmere.app/Contents/MacOS/old");
    const FilePath destination = home.path("home/Applications/Quillmere.app");

    inUnprivilegedChild(home.path(), [&] {
        EXPECT_EQ(install(bundle), destination);
        EXPECT_FALSE(receiptOf(bundle).shouldShowWelcome());
    });

    EXPECT_EQ(home.contents("home/Applications/Quillmere.app/Contents/MacOS/quillmere"), "program");
    EXPECT_FALSE(home.exists("home/Applications/Quillmere.app/Contents/MacOS/old"));
    EXPECT_EQ(home.mode("home/Applications/Quillmere.app/Contents/MacOS/quillmere"), 0755u);
    EXPECT_TRUE(home.exists("home/Library/Application Support/Quillmere/"
                            "FINAL_INSTALLATION_CONDITIONS_RULES_DISCLAIMER.md"));
}

TEST_F(SetupOnDiskTest, LeavesNothingOfABundleForWhichTheDiskIsTooSmall)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    const FilePath bundle = addBundle("home/Downloads");
    home.addFile("home/Downloads/Quillmere.app/Contents/Resources/large", QByteArray(1024 * 1024, 'x'));
    home.addFolder("home/Applications");
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("home/Applications"), "size=512k"));
        inUnprivilegedChild(home.path(), [&] {
            EXPECT_EQ(install(bundle), std::nullopt);
            EXPECT_FALSE(itemExists(LinuxUserDefaults::fileOf(home.path("home"))));
        });
        EXPECT_THAT(home.names("home/Applications"), IsEmpty());
    });
}

TEST_F(SetupOnDiskTest, KeepsTheDateOfTheSetupInTheSettingsFile)
{
    const FilePath file = LinuxUserDefaults::fileOf(home.path("home"));
    const QDateTime date({2026, 11, 21}, {9, 12, 30}, Qt::UTC);
    LinuxUserDefaults(file).setDate(u"setup.completedDate"_qs, date);

    const LinuxUserDefaults read(file);

    EXPECT_EQ(read.date(u"setup.completedDate"_qs), date);
    EXPECT_EQ(read.date(u"setup.other"_qs), std::nullopt);
    EXPECT_EQ(read.string(u"setup.completedDate"_qs), std::nullopt);
}
