#include "Tools/BundleInstallation.h"

#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Tools/HeldWork.h"

#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr uid_t nobody = 65534;

QByteArray whyNotRoot()
{
    return ::geteuid() == 0 ? QByteArray() : "Only root can act for somebody else";
}

/// A bundle of the user who runs the test, and a folder for applications.
class BundleInstallationTest : public testing::Test
{
protected:
    void SetUp() override { addBundle("bundle", "new"); }

    void addBundle(const QByteArray &name, const QByteArray &text) const
    {
        home.addFile(name + "/Contents/Info.plist", text);
        home.addFile(name + "/Contents/MacOS/program", text);
        home.addFile(name + "/Contents/Resources/deep/picture", text);
        home.addLink(name + "/Contents/Resources/link", "../MacOS/program");
    }
    static Caller self() { return Caller::ofUser(::geteuid()).valueOr({}); }
    static Caller stranger() { return Caller::ofUser(nobody).valueOr({}); }

    [[nodiscard]] Result<void> install(const QByteArray &name = "bundle", const Caller &caller = self()) const
    {
        return BundleInstallation(home.path("Applications")).install(home.path(name), caller);
    }
    /// Nothing when it is installed.
    [[nodiscard]] std::optional<Failure::Kind> refusal(const QByteArray &name = "bundle",
                                                       const Caller &caller = self()) const
    {
        const Result<void> installed = install(name, caller);
        return installed ? std::nullopt : std::optional(installed.failure().kind);
    }
    void installOld() const
    {
        addBundle("old", "old");
        home.addFile("old/Contents/extra");
        ASSERT_TRUE(install("old"));
    }

    /// "old" or "new" when the installed bundle is that one and whole; else anything.
    QByteArray installed() const
    {
        const QByteArray text = home.contents(app + "/Contents/Info.plist");
        const QList<QByteArray> contents = home.names(app + "/Contents");
        const bool isWhole = home.contents(app + "/Contents/MacOS/program") == text
            && home.contents(app + "/Contents/Resources/deep/picture") == text
            && home.contents(app + "/Contents/Resources/link") == text;
        const qsizetype count = text == "old" ? 4 : 3;
        return isWhole && contents.size() == count ? text : "torn: " + contents.join(' ');
    }
    void expectOldAlone() const
    {
        EXPECT_EQ(installed(), "old");
        EXPECT_EQ(home.names("Applications"), QList<QByteArray>{"Quillmere.app"});
    }
    void setMode(const QByteArray &name, mode_t mode) const
    {
        ASSERT_EQ(::chmod(home.path(name).bytes().constData(), mode), 0);
    }

    TemporaryHome home;
    const QByteArray app = "Applications/Quillmere.app";
};

} // namespace

TEST_F(BundleInstallationTest, InstallsWhereNothingWas)
{
    ASSERT_TRUE(install());

    EXPECT_EQ(installed(), "new");
    EXPECT_EQ(home.names("Applications"), QList<QByteArray>{"Quillmere.app"});
    EXPECT_EQ(home.mode("Applications") & ~::umask(::umask(0)), 0755u & ~::umask(::umask(0)));
    EXPECT_EQ(home.contents("bundle/Contents/Info.plist"), "new");
}

TEST_F(BundleInstallationTest, ReplacesTheOldOneWhole)
{
    installOld();

    ASSERT_TRUE(install());

    EXPECT_EQ(installed(), "new");
    EXPECT_EQ(home.names("Applications"), QList<QByteArray>{"Quillmere.app"});
}

TEST_F(BundleInstallationTest, ReplacesALinkAndNotWhatItLeadsTo)
{
    addBundle("elsewhere", "old");
    home.addFolder("Applications");
    home.addLink(app, "../elsewhere");

    ASSERT_TRUE(install());

    EXPECT_EQ(installed(), "new");
    EXPECT_EQ(home.contents("elsewhere/Contents/Info.plist"), "old");
    EXPECT_EQ(home.names("Applications"), QList<QByteArray>{"Quillmere.app"});
}

TEST_F(BundleInstallationTest, KeepsLinksTimesAndAttributesOfUsers)
{
    const QByteArray picture = "Contents/Resources/deep/picture";
    const QByteArray path = home.path("bundle/" + picture).bytes();
    ASSERT_EQ(::setxattr(path.constData(), "user.note", "kept", 4, 0), 0);
    const timespec times[] = {{1'000'000'000, 5}, {1'100'000'000, 7}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);

    ASSERT_TRUE(install());

    const QByteArray copy = home.path(app + '/' + picture).bytes();
    char value[8] = {};
    EXPECT_EQ(::getxattr(copy.constData(), "user.note", value, sizeof value), 4);
    EXPECT_STREQ(value, "kept");
    struct stat status = {};
    ASSERT_EQ(::lstat(copy.constData(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
    EXPECT_EQ(status.st_mtim.tv_nsec, 7);
    EXPECT_EQ(QFile::symLinkTarget(QFile::decodeName(home.path(app + "/Contents/Resources/link").bytes())),
              QFile::decodeName(home.path(app + "/Contents/MacOS/program").bytes()));
}

TEST_F(BundleInstallationTest, LetsEverybodyUseItAndNobodyChangeItOrGainByIt)
{
    home.addFile("bundle/private");
    setMode("bundle/private", 0600);
    setMode("bundle/Contents/MacOS/program", 06777);
    setMode("bundle/Contents/Resources", 02777);
    setMode("bundle/Contents/Resources/deep/picture", 0400);
    setMode("bundle", 0700);

    ASSERT_TRUE(install());

    EXPECT_EQ(home.mode(app), 0755u);
    EXPECT_EQ(home.mode(app + "/private"), 0644u);
    EXPECT_EQ(home.mode(app + "/Contents/MacOS/program"), 0755u);
    EXPECT_EQ(home.mode(app + "/Contents/Resources"), 0755u);
    EXPECT_EQ(home.mode(app + "/Contents/Resources/deep/picture"), 0444u);
}

TEST_F(BundleInstallationTest, GivesACopyNoCapabilitiesAndNoListOfRights)
{
    QUILLMERE_NEED(whyNotRoot());
    const QByteArray path = home.path("bundle/Contents/MacOS/program").bytes();
    // capabilities(7): a record of version 2 with CAP_CHOWN permitted and effective.
    const QByteArray capabilities("\x01\0\0\x02\x01\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);
    ASSERT_EQ(::setxattr(path.constData(), "security.capability", capabilities.constData(), 20, 0), 0);

    ASSERT_TRUE(install());

    EXPECT_LT(
        ::getxattr(home.path(app + "/Contents/MacOS/program").bytes().constData(), "security.capability", nullptr, 0),
        0);
}

TEST_F(BundleInstallationTest, MakesItTheOwnersOfThisProcess)
{
    QUILLMERE_NEED(whyNotRoot());
    for (const char *name : {"", "/Contents", "/Contents/Info.plist", "/Contents/Resources/link"})
        ASSERT_EQ(::lchown(home.path("bundle" + QByteArray(name)).bytes().constData(), nobody, nobody), 0);
    setMode("", 0755);

    ASSERT_TRUE(install("bundle", stranger()));

    for (const char *name : {"", "/Contents", "/Contents/Info.plist", "/Contents/Resources/link"}) {
        struct stat status = {};
        ASSERT_EQ(::lstat(home.path(app + name).bytes().constData(), &status), 0);
        EXPECT_EQ(status.st_uid, 0u) << name;
        EXPECT_EQ(status.st_gid, 0u) << name;
    }
}

TEST_F(BundleInstallationTest, ReadsNothingThatTheCallerMayNotRead)
{
    QUILLMERE_NEED(whyNotRoot());
    installOld();
    setMode("", 0755);

    setMode("bundle/Contents/MacOS/program", 0600);
    EXPECT_EQ(refusal("bundle", stranger()), Failure::Kind::NoPermission);
    setMode("bundle/Contents/MacOS/program", 0755);
    setMode("bundle/Contents/Resources", 0700);
    EXPECT_EQ(refusal("bundle", stranger()), Failure::Kind::NoPermission);
    setMode("bundle/Contents/Resources", 0755);
    setMode("", 0700);
    EXPECT_EQ(refusal("bundle", stranger()), Failure::Kind::NoPermission);
    expectOldAlone();

    setMode("", 0755);
    EXPECT_TRUE(install("bundle", stranger()));
    EXPECT_EQ(installed(), "new");
    EXPECT_EQ(::geteuid(), 0u);
    EXPECT_TRUE(QFile(QFile::decodeName(home.path("afterwards").bytes())).open(QFile::WriteOnly));
}

TEST_F(BundleInstallationTest, RefusesLinksThatLeadOut)
{
    installOld();
    for (const char *target : {"/etc/passwd", "../../../secret", "../MacOS/../../../secret", "deep/../../.."}) {
        home.addLink("bundle/Contents/Resources/out", target);

        EXPECT_EQ(refusal(), Failure::Kind::LinkInPath) << target;
        expectOldAlone();
        ASSERT_EQ(::unlink(home.path("bundle/Contents/Resources/out").bytes().constData()), 0);
    }
    home.addLink("bundle/Contents/Resources/inside", "../../Contents/./Resources//deep");
    EXPECT_TRUE(install());
}

TEST_F(BundleInstallationTest, RefusesABundleThatIsALinkOrNone)
{
    installOld();
    home.addLink("link", "bundle");
    home.addFolder("empty");
    home.addFile("file");
    home.addFolder("folder/Contents/Info.plist");
    home.addFile("secret");
    home.addLink("linked/Contents/Info.plist", home.path("secret").bytes());

    for (const char *name : {"link", "empty", "file", "folder", "linked", "missing", "bundle/Contents"})
        EXPECT_FALSE(install(name)) << name;
    const BundleInstallation installation(home.path("Applications"));
    for (const char *path : {"", ".", "bundle", "Applications/Quillmere.app"})
        EXPECT_FALSE(installation.install(FilePath(path), self())) << path;
    expectOldAlone();
}

TEST_F(BundleInstallationTest, RefusesWhatIsNeitherFileNorFolderNorLink)
{
    installOld();
    ASSERT_EQ(::mkfifo(home.path("bundle/Contents/fifo").bytes().constData(), 0666), 0);

    EXPECT_EQ(refusal(), Failure::Kind::NotSupported);
    expectOldAlone();
}

TEST_F(BundleInstallationTest, RefusesFoldersThatLieEndlesslyDeep)
{
    installOld();
    QByteArray deep = "bundle";
    for (int level = 0; level < 70; ++level)
        deep += "/d";
    home.addFolder(deep);

    EXPECT_EQ(refusal(), Failure::Kind::NotSupported);
    expectOldAlone();
}

TEST_F(BundleInstallationTest, DoesNotEnterAnotherFileSystem)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    installOld();
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("bundle/Contents/Resources"), "size=1m"));

        EXPECT_EQ(refusal(), Failure::Kind::NotSupported);
        expectOldAlone();
    });
}

TEST_F(BundleInstallationTest, KeepsTheOldOneWhereThereIsNoRoomForTheNew)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    home.addFile("bundle/large", QByteArray(300'000, 'x'));
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.addFolder("Applications"), "size=128k,mode=755"));
        installOld();

        EXPECT_EQ(refusal(), Failure::Kind::NoSpace);
        expectOldAlone();
    });
}

TEST_F(BundleInstallationTest, RefusesAFolderForApplicationsThatOthersMayChange)
{
    home.addFolder("Applications");
    setMode("Applications", 0777);
    EXPECT_EQ(refusal(), Failure::Kind::Protected);
    setMode("Applications", 0755);
    ASSERT_TRUE(install());

    home.addLink("linked", "Applications");
    EXPECT_FALSE(BundleInstallation(home.path("linked")).install(home.path("bundle"), self()));
    EXPECT_FALSE(BundleInstallation(home.path("missing/Applications")).install(home.path("bundle"), self()));
}

TEST_F(BundleInstallationTest, ClearsAwayWhatAKilledOneHasLeft)
{
    installOld();
    home.addFile("Applications/.quillmere-installing/bundle/Contents/half");
    setMode("Applications/.quillmere-installing", 0700);

    ASSERT_TRUE(install());

    EXPECT_EQ(installed(), "new");
    EXPECT_EQ(home.names("Applications"), QList<QByteArray>{"Quillmere.app"});
}

TEST_F(BundleInstallationTest, DoesNotTouchAStagingFolderThatIsSomebodyElses)
{
    installOld();
    home.addFile("Applications/.quillmere-installing/kept");
    setMode("Applications/.quillmere-installing", 0755);

    EXPECT_EQ(refusal(), Failure::Kind::Protected);

    EXPECT_TRUE(home.exists("Applications/.quillmere-installing/kept"));
    EXPECT_EQ(installed(), "old");
}

TEST_F(BundleInstallationTest, LeavesTheOldOneOrTheNewWhereverItIsKilled)
{
    const int step = qEnvironmentVariableIsSet("QUILLMERE_LONG_TESTS") ? 1 : 5;
    int kills = 0;
    int survivors = 0;
    for (int call = 1;; call += step, ++kills) {
        installOld();
        const WorkEnding ending = doAndKillAt(call, [this] { return install().isOk(); });
        ASSERT_NE(ending, WorkEnding::Failed) << "at call " << call;
        if (ending == WorkEnding::Done)
            break;

        ASSERT_TRUE(installed() == "old" || installed() == "new") << installed().constData() << " at call " << call;
        survivors += installed() == "old" ? 1 : 0;
    }
    EXPECT_EQ(installed(), "new");
    EXPECT_EQ(home.names("Applications"), QList<QByteArray>{"Quillmere.app"});
    EXPECT_GT(survivors, 20);
    EXPECT_GT(kills, survivors);
}

TEST_F(BundleInstallationTest, LetsOneAfterTheOtherInstall)
{
    addBundle("other", "old");
    home.addFile("other/Contents/extra");
    QList<pid_t> children;
    for (int index = 0; index < 6; ++index) {
        children.append(
            startChild([&, index] { ::_exit(install(index % 2 == 0 ? "bundle" : "other").isOk() ? 0 : 1); }));
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_TRUE(installed() == "old" || installed() == "new") << installed().constData();
    EXPECT_EQ(home.names("Applications"), QList<QByteArray>{"Quillmere.app"});
}

TEST_F(BundleInstallationTest, TakesOneBundleAndACallerThatItKnows)
{
    const BundleInstallation installation(home.path("Applications"));
    const QString bundle = QFile::decodeName(home.path("bundle").bytes());

    EXPECT_EQ(installation.run({}, self()).status, 64);
    EXPECT_EQ(installation.run({bundle, bundle}, self()).status, 64);
    EXPECT_EQ(installation.run({bundle}, Caller::ofUser(4'000'000'000)),
              (ToolEnd{1, u"User 4000000000 has no account here."_qs}));
    EXPECT_EQ(installation.run({u"/missing"_qs}, self()),
              (ToolEnd{1, u"The bundle was not installed: /missing: No such file or directory"_qs}));
    EXPECT_FALSE(home.exists("Applications"));
    EXPECT_EQ(installation.run({bundle}, self()), ToolEnd());
}
