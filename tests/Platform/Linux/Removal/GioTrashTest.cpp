#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Removal/TrashCan.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <optional>

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
