#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Removal/TrashCan.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/SpawnedProgram.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <optional>
#include <tuple>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// The desktop's own trash, in the same home and on a message bus of its own.
class GioTrashTest : public testing::Test
{
protected:
    void SetUp() override
    {
        home.addFolder("run");
        QFile::setPermissions(QFile::decodeName(home.path("run").bytes()),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QUILLMERE_NEED(
            gio({"trash", "--list"}).has_value() ? "" : "gio cannot list a trash here (libglib2.0-bin, gvfs, dbus)");
    }

    /// What `gio` prints; nothing when it fails.
    std::optional<QByteArray> gio(const QList<QByteArray> &arguments) const
    {
        QProcessEnvironment variables;
        variables.insert(u"PATH"_qs, qEnvironmentVariable("PATH"));
        for (const auto &[name, folder] : {std::pair("HOME", "home"), std::pair("XDG_DATA_HOME", "home/.local/share"),
                                           std::pair("XDG_RUNTIME_DIR", "run")})
            variables.insert(QLatin1String(name), QFile::decodeName(home.path(folder).bytes()));
        QStringList command = {u"--"_qs, u"gio"_qs};
        for (const QByteArray &argument : arguments)
            command.append(QFile::decodeName(argument));
        QProcess process;
        process.setProcessEnvironment(variables);
        process.start(u"dbus-run-session"_qs, command);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
            return std::nullopt;
        return process.readAllStandardOutput();
    }

    /// The same from inside a namespace of mounts, where nothing of Qt's may start a program.
    QByteArray gioInNamespace(const QList<QByteArray> &arguments) const
    {
        QStringList command = {u"-i"_qs, u"PATH="_qs + qEnvironmentVariable("PATH")};
        for (const auto &[name, folder] : {std::pair("HOME", "home"), std::pair("XDG_DATA_HOME", "home/.local/share"),
                                           std::pair("XDG_RUNTIME_DIR", "run")})
            command.append(QLatin1String(name) + u'=' + QFile::decodeName(home.path(folder).bytes()));
        command += {u"dbus-run-session"_qs, u"--"_qs, u"gio"_qs};
        for (const QByteArray &argument : arguments)
            command.append(QFile::decodeName(argument));
        QByteArray output;
        EXPECT_EQ(runProgram(u"env"_qs, command, &output), 0);
        return output;
    }

    /// The desktop takes the volumes that a test can make for the system's own, and does not look into them. Puts what
    /// is on "volume", byte for byte, on one in its place that it does look into.
    bool showToGio() const
    {
        const QByteArray volume = home.path("volume").bytes();
        const QByteArray shown = home.addFolder("shown").bytes();
        return ::mount("ramfs", shown.constData(), "ramfs", 0, nullptr) == 0
            && runProgram(u"cp"_qs, {u"-a"_qs, QFile::decodeName(volume + "/."), QFile::decodeName(shown)}) == 0
            && ::umount(volume.constData()) == 0
            && ::mount(shown.constData(), volume.constData(), nullptr, MS_MOVE, nullptr) == 0;
    }

    static QByteArray locator(const FilePath &trashed)
    {
        return "trash:///" + trashed.lastPathComponent().toPercentEncoding();
    }

    TemporaryHome home;
};

} // namespace

TEST_F(GioTrashTest, ListsAndRestoresWhatWeTrashed)
{
    const TrashCan trashCan(home.environment());
    const QList<QByteArray> names = {"a b.txt", "100%41", "-rf", QByteArray(255, 'x')};
    QList<FilePath> trashed;
    for (const QByteArray &name : names)
        trashed.append(trashCan.trash(home.addFile("home/folder/" + name, name)).value());
    home.addFile("home/tree/deep/file");
    trashed.append(trashCan.trash(home.path("home/tree")).value());
    home.addLink("home/dangling", "nowhere");
    trashed.append(trashCan.trash(home.path("home/dangling")).value());

    const QByteArray listed = gio({"trash", "--list"}).value();

    EXPECT_TRUE(listed.contains('\t' + home.path("home/folder/a b.txt").bytes() + '\n')) << listed.constData();
    for (const FilePath &item : trashed) {
        EXPECT_TRUE(listed.contains(locator(item) + '\t')) << listed.constData();
        EXPECT_TRUE(gio({"trash", "--restore", locator(item)})) << item.bytes().constData();
    }
    for (const QByteArray &name : names)
        EXPECT_EQ(home.contents("home/folder/" + name), name);
    EXPECT_TRUE(home.exists("home/tree/deep/file"));
    EXPECT_TRUE(home.exists("home/dangling"));
    EXPECT_EQ(home.names("home/.local/share/Trash/info"), QList<QByteArray>());
}

// The tool restores such names, its own items among them, under the escaped text that it lists; so listing has to do.
TEST_F(GioTrashTest, ListsNamesBeyondAsciiAsItListsItsOwn)
{
    for (const QByteArray &name : {QByteArray("я.txt"), QByteArray("line\nbreak"), QByteArray("שלום")}) {
        ASSERT_TRUE(gio({"trash", home.addFile("home/theirs/" + name).bytes()}));
        ASSERT_TRUE(TrashCan(home.environment()).trash(home.addFile("home/ours/" + name)));
    }

    const QList<QByteArray> lines = gio({"trash", "--list"}).value().trimmed().split('\n');

    QList<QByteArray> theirs;
    QList<QByteArray> ours;
    for (const QByteArray &line : lines) {
        const QByteArray origin = line.mid(line.indexOf('\t') + 1);
        (origin.contains("/theirs/") ? theirs : ours).append(origin.mid(origin.lastIndexOf('/')));
    }
    std::sort(theirs.begin(), theirs.end());
    std::sort(ours.begin(), ours.end());
    EXPECT_EQ(ours.size(), 3);
    EXPECT_EQ(ours, theirs);
}

TEST_F(GioTrashTest, LeavesATrashThatWeCanReadAndGoOnWith)
{
    const FilePath item = home.addFile("home/a %.txt", "theirs");
    ASSERT_TRUE(gio({"trash", item.bytes()}));

    const auto info = TrashInfo::fromText(home.contents("home/.local/share/Trash/info/a %.txt.trashinfo"));
    const auto trashed = TrashCan(home.environment()).trash(home.addFile("home/a %.txt", "ours"));

    ASSERT_TRUE(info);
    EXPECT_EQ(info->path, item.bytes());
    EXPECT_TRUE(info->deletionDate.isValid());
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed.value().lastPathComponent(), "a %.2.txt");
    EXPECT_EQ(home.contents("home/.local/share/Trash/files/a %.txt"), "theirs");
}

TEST_F(GioTrashTest, ListsAndRestoresWhatWeTrashedOnAnotherVolume)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    home.addFolder("backing");
    inMountNamespace([&] {
        ASSERT_TRUE(mountVolume(home.path("volume"), home.path("backing")));
        UserEnvironment environment = home.environment();
        environment.user = ::geteuid();
        const QByteArray user = QByteArray::number(environment.user);
        const auto own = TrashCan(environment).trash(home.addFile("volume/folder/a b", "in the own one"));
        ASSERT_TRUE(own);
        ASSERT_EQ(own.value(), home.path("volume/.Trash-" + user + "/files/a b"));
        home.addFolder("volume/.Trash");
        ASSERT_EQ(::chmod(home.path("volume/.Trash").bytes().constData(), 01777), 0);
        const auto shared = TrashCan(environment).trash(home.addFile("volume/folder/c", "in the shared one"));
        ASSERT_TRUE(shared);
        ASSERT_EQ(shared.value(), home.path("volume/.Trash/" + user + "/files/c"));

        ASSERT_TRUE(showToGio());
        const QList<QByteArray> lines = gioInNamespace({"trash", "--list"}).trimmed().split('\n');

        ASSERT_EQ(lines.size(), 2);
        for (const QByteArray &line : lines)
            std::ignore = gioInNamespace({"trash", "--restore", line.first(line.indexOf('\t'))});
        EXPECT_EQ(home.contents("volume/folder/a b"), "in the own one");
        EXPECT_EQ(home.contents("volume/folder/c"), "in the shared one");
    });
}
