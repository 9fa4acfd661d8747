#include "Platform/Linux/Applications/ApplicationRegistration.h"

#include "Platform/Linux/Applications/DesktopEntry.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/SpawnedProgram.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <cstdio>

#include <sys/stat.h>

using namespace Quillmere;

namespace {

class ApplicationRegistrationTest : public testing::Test
{
protected:
    FilePath addBundle(const QByteArray &folder, const QByteArray &identifier = "com.veltrane.quillmere") const
    {
        const QByteArray bundle = folder + "/Quillmere.app";
        home.addFile(bundle + "/Contents/Info.plist",
                     "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier
                         + "</string><key>CFBundleExecutable</key><string>quillmere</string></dict></plist>");
        home.addFile(bundle + "/Contents/Resources/app_logo.png", "picture");
        const FilePath program = home.addFile(bundle + "/Contents/MacOS/quillmere", "#!/bin/sh\n");
        ::chmod(program.bytes().constData(), 0755);
        return home.path(bundle);
    }
    [[nodiscard]] QByteArray entry() const
    {
        return home.contents("home/.local/share/applications/com.veltrane.quillmere.desktop");
    }

    TemporaryHome home;
    const FilePath entries = home.path("home/.local/share/applications");
};

} // namespace

TEST_F(ApplicationRegistrationTest, IsFoundByTheDesktopAfterwards)
{
    const FilePath bundle = addBundle("home/Applications");

    ASSERT_TRUE(registerApplication(bundle, entries));

    const QList<DesktopEntry> found = readDesktopEntries({entries});
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().id, "com.veltrane.quillmere");
    EXPECT_EQ(found.first().icon, u"com.veltrane.quillmere"_qs);
    EXPECT_EQ(found.first().executable, bundle.appending("Contents/MacOS/quillmere"));
    EXPECT_EQ(home.contents("home/.local/share/icons/hicolor/512x512/apps/com.veltrane.quillmere.png"), "picture");
}

TEST_F(ApplicationRegistrationTest, WritesAnEntryThatTheDesktopsOwnToolAccepts)
{
    ASSERT_TRUE(registerApplication(addBundle("home/Applications"), entries));

    QByteArray complaints;
    const int status
        = runProgram(u"desktop-file-validate"_qs,
                     {QString::fromUtf8(entries.appending("com.veltrane.quillmere.desktop").bytes())}, &complaints);
    const bool hasTool = status >= 0 && status != 127;
    QUILLMERE_NEED(hasTool ? QByteArray() : "desktop-file-validate is missing.");

    EXPECT_EQ(status, 0) << complaints.constData();
}

TEST_F(ApplicationRegistrationTest, StartsAProgramWhateverItsFolderIsCalled)
{
    for (const QByteArray folder : {"with blanks", "it's", "a \"b\" c", "cost $HOME `id`", "back\\slash"}) {
        const FilePath bundle = addBundle("home/" + folder);

        ASSERT_TRUE(registerApplication(bundle, entries)) << folder.constData();

        const QList<DesktopEntry> found = readDesktopEntries({entries});
        ASSERT_EQ(found.size(), 1) << folder.constData();
        EXPECT_EQ(found.first().executable, bundle.appending("Contents/MacOS/quillmere")) << folder.constData();
    }
}

TEST_F(ApplicationRegistrationTest, ReplacesTheEntryOfAnEarlierPlace)
{
    ASSERT_TRUE(registerApplication(addBundle("home/old"), entries));

    ASSERT_TRUE(registerApplication(addBundle("home/new"), entries));

    EXPECT_TRUE(entry().contains("/home/new/Quillmere.app"));
    EXPECT_FALSE(entry().contains("/home/old/"));
}

TEST_F(ApplicationRegistrationTest, IsForgottenWithItsPicture)
{
    const FilePath bundle = addBundle("home/Applications");
    ASSERT_TRUE(registerApplication(bundle, entries));

    unregisterApplication(bundle, entries);

    EXPECT_TRUE(home.names("home/.local/share/applications").isEmpty());
    EXPECT_TRUE(home.names("home/.local/share/icons/hicolor/512x512/apps").isEmpty());
}

TEST_F(ApplicationRegistrationTest, IsForgottenThroughAHomeThatIsALink)
{
    const FilePath bundle = addBundle("home/Applications");
    home.addLink("link", "home");
    ASSERT_TRUE(registerApplication(home.path("link/Applications/Quillmere.app"), entries));

    unregisterApplication(bundle, entries);

    EXPECT_TRUE(home.names("home/.local/share/applications").isEmpty());
}

TEST_F(ApplicationRegistrationTest, StaysKnownWhereAnotherCopyGoes)
{
    const FilePath stray = addBundle("home/Downloads");
    ASSERT_TRUE(registerApplication(addBundle("home/Applications"), entries));

    unregisterApplication(stray, entries);

    EXPECT_TRUE(entry().contains("/home/Applications/Quillmere.app"));
    EXPECT_EQ(home.names("home/.local/share/icons/hicolor/512x512/apps").size(), 1);
}

TEST_F(ApplicationRegistrationTest, ForgetsAnEntryThatLeadsNowhereWithAnyCopy)
{
    const FilePath moved = addBundle("home/Applications");
    ASSERT_TRUE(registerApplication(moved, entries));
    const FilePath here = home.path("home/elsewhere.app");
    ASSERT_EQ(::rename(moved.bytes().constData(), here.bytes().constData()), 0);

    unregisterApplication(here, entries);

    EXPECT_TRUE(home.names("home/.local/share/applications").isEmpty());
}

TEST_F(ApplicationRegistrationTest, KnowsNoFolderThatDoesNotSayWhatItIs)
{
    const FilePath silent = home.addFolder("home/Silent.app");

    EXPECT_FALSE(registerApplication(silent, entries));
    EXPECT_FALSE(registerApplication(addBundle("home/evil", "../../escaped"), entries));
    EXPECT_FALSE(registerApplication(home.path("home/nowhere.app"), entries));
    EXPECT_FALSE(home.exists("home/.local"));
}
