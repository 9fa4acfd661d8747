#include "Platform/Linux/Applications/LinuxBundles.h"
#include "Utilities/PropertyListLimits.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

const QByteArray head = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>";
const QByteArray tail = "</dict></plist>";

QByteArray text(const QByteArray &key, const QByteArray &value)
{
    return "<key>" + key + "</key><string>" + value + "</string>";
}

} // namespace

class LinuxBundlesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        ASSERT_TRUE(QDir(folder.path()).mkpath(u"Sample.app/Contents"_qs));
    }

    void writeInformation(const QByteArray &contents)
    {
        QFile file(QFile::decodeName(information.bytes()));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(contents), contents.size());
    }

    /// What the bundle says when it says nothing.
    [[nodiscard]] Bundle silent() const { return {bundle, std::nullopt, std::nullopt}; }

    QTemporaryDir folder;
    FilePath bundle = FilePath(folder.path().toUtf8()).appending("Sample.app");
    FilePath information = bundle.appending("Contents/Info.plist");
    LinuxBundles bundles;
};

TEST(LinuxBundlesMainLocationTest, IsTheBundleAroundTheProgram)
{
    EXPECT_EQ(LinuxBundles(FilePath("/opt/Quillmere.app/Contents/MacOS/quillmere")).mainLocation(),
              FilePath("/opt/Quillmere.app"));
    EXPECT_EQ(LinuxBundles(FilePath("/opt/./Other name.app/Contents//MacOS/quillmere")).mainLocation(),
              FilePath("/opt/Other name.app"));
}

TEST(LinuxBundlesMainLocationTest, IsTheProgramsFolderOutsideOfAnyBundle)
{
    EXPECT_EQ(LinuxBundles(FilePath("/usr/bin/quillmere")).mainLocation(), FilePath("/usr/bin"));
    EXPECT_EQ(LinuxBundles(FilePath("/opt/Quillmere/Contents/MacOS/quillmere")).mainLocation(),
              FilePath("/opt/Quillmere/Contents/MacOS"));
    EXPECT_EQ(LinuxBundles(FilePath("/opt/Quillmere.app/Contents/Helpers/ps")).mainLocation(),
              FilePath("/opt/Quillmere.app/Contents/Helpers"));
    EXPECT_EQ(LinuxBundles(FilePath("/Contents/MacOS/quillmere")).mainLocation(), FilePath("/Contents/MacOS"));
    EXPECT_EQ(LinuxBundles(FilePath("/quillmere")).mainLocation(), FilePath("/"));
}

TEST(LinuxBundlesMainLocationTest, AsksTheKernelWhereTheRunningProgramLies)
{
    struct stat running = {};
    struct stat found = {};
    ASSERT_EQ(::stat("/proc/self/exe", &running), 0);

    ASSERT_EQ(::stat(LinuxBundles::runningProgram().bytes().constData(), &found), 0);

    EXPECT_EQ(found.st_ino, running.st_ino);
    EXPECT_EQ(LinuxBundles().mainLocation(), LinuxBundles::runningProgram().deletingLastPathComponent());
}

TEST_F(LinuxBundlesTest, ReadsIdentifierAndExecutable)
{
    writeInformation(head + text("CFBundleIdentifier", "com.example.sample") + text("CFBundleExecutable", "sämple")
                     + tail);

    const std::optional<Bundle> opened = bundles.open(bundle);

    EXPECT_EQ(opened, (Bundle{bundle, u"com.example.sample"_qs, bundle.appending("Contents/MacOS/s\xC3\xA4mple")}));
}

TEST_F(LinuxBundlesTest, ReadsVersionAndBuild)
{
    writeInformation(head + text("CFBundleShortVersionString", "1.3.4") + text("CFBundleVersion", "7") + tail);

    const std::optional<Bundle> opened = bundles.open(bundle);

    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->shortVersion, u"1.3.4"_qs);
    EXPECT_EQ(opened->build, u"7"_qs);
}

TEST_F(LinuxBundlesTest, TakesAVersionThatIsNoTextForNone)
{
    writeInformation(head
                     + "<key>CFBundleShortVersionString</key><real>1.3</real>"
                       "<key>CFBundleVersion</key><integer>7</integer>"
                     + tail);

    const std::optional<Bundle> opened = bundles.open(bundle);

    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->shortVersion, std::nullopt);
    EXPECT_EQ(opened->build, std::nullopt);
}

TEST_F(LinuxBundlesTest, OpensAFolderThatSaysNothing)
{
    EXPECT_EQ(bundles.open(bundle), silent());
    EXPECT_EQ(bundles.open(FilePath(folder.path().toUtf8())),
              (Bundle{FilePath(folder.path().toUtf8()), std::nullopt, std::nullopt}));
}

TEST_F(LinuxBundlesTest, OpensNothingButFolders)
{
    writeInformation(head + tail);

    EXPECT_EQ(bundles.open(information), std::nullopt);
    EXPECT_EQ(bundles.open(bundle.appending("missing")), std::nullopt);
    EXPECT_EQ(bundles.open(FilePath()), std::nullopt);
}

TEST_F(LinuxBundlesTest, TakesNoValueOfAnotherType)
{
    writeInformation(head
                     + "<key>CFBundleIdentifier</key><integer>7</integer>"
                       "<key>CFBundleExecutable</key><array><string>sample</string></array>"
                     + tail);

    EXPECT_EQ(bundles.open(bundle), silent());
}

TEST_F(LinuxBundlesTest, TakesNoExecutableThatLeadsElsewhere)
{
    for (const char *name : {"", ".", "..", "../../../../bin/sh", "/bin/sh", "sub/sample"}) {
        writeInformation(head + text("CFBundleIdentifier", "com.example.sample") + text("CFBundleExecutable", name)
                         + tail);

        EXPECT_EQ(bundles.open(bundle), (Bundle{bundle, u"com.example.sample"_qs, std::nullopt})) << name;
    }
}

TEST_F(LinuxBundlesTest, TakesNothingFromWhatIsNoPropertyList)
{
    for (const char *contents : {"", "not a list", "<plist><array/></plist>", "bplist00"}) {
        writeInformation(contents);

        EXPECT_EQ(bundles.open(bundle), silent()) << contents;
    }
}

TEST_F(LinuxBundlesTest, TakesNothingFromAFolderInPlaceOfTheList)
{
    ASSERT_EQ(::mkdir(information.bytes().constData(), 0700), 0);

    EXPECT_EQ(bundles.open(bundle), silent());
}

TEST_F(LinuxBundlesTest, DoesNotWaitForWhoeverWritesIntoAPipe)
{
    ASSERT_EQ(::mkfifo(information.bytes().constData(), 0600), 0);

    EXPECT_EQ(bundles.open(bundle), silent());
}

TEST_F(LinuxBundlesTest, DoesNotReadAHundredMegabytes)
{
    constexpr off_t size = 100 * 1024 * 1024;
    writeInformation(head + text("CFBundleIdentifier", "com.example.sample") + tail);
    ASSERT_EQ(::truncate(information.bytes().constData(), size), 0);

    EXPECT_EQ(bundles.open(bundle), silent());
}

TEST_F(LinuxBundlesTest, TakesNothingFromAListBeyondTheLimitOfAll)
{
    const QByteArray contents = head + text("CFBundleIdentifier", "com.example.sample");
    writeInformation(contents + tail);
    ASSERT_NE(bundles.open(bundle), silent());

    writeInformation(contents + QByteArray(PropertyListLimits::mostBytes, ' ') + tail);

    EXPECT_EQ(bundles.open(bundle), silent());
}

TEST_F(LinuxBundlesTest, ReadsTheListThatTheBuildMade)
{
    const FilePath built(QUILLMERE_BUNDLE);

    EXPECT_EQ(bundles.open(built),
              (Bundle{built, u"com.veltrane.quillmere"_qs, built.appending("Contents/MacOS/quillmere"), u"1.3.4"_qs,
                      u"1"_qs}));
}
