#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <QProcess>

using namespace Quillmere;

namespace {

/// What other file systems and failing disks answer, put into the mouth of this one.
class TrashInjectionTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QProcess tracer;
        tracer.start(u"strace"_qs, {u"-V"_qs});
        QUILLMERE_NEED(tracer.waitForFinished() ? "" : "strace is not installed");
    }

    /// True when `quillmere-trash` says that it succeeded.
    bool trash(const FilePath &item, const QStringList &injections) const
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(u"HOME"_qs, QFile::decodeName(home.path("home").bytes()));
        variables.insert(u"XDG_DATA_HOME"_qs, QFile::decodeName(home.path("home/.local/share").bytes()));
        variables.insert(u"ASAN_OPTIONS"_qs, u"detect_leaks=0"_qs);
        QStringList arguments = {u"-f"_qs, u"-o"_qs, u"/dev/null"_qs};
        for (const QString &injection : injections)
            arguments << u"-e"_qs << u"inject="_qs + injection;
        arguments << QStringLiteral(QUILLMERE_TRASH) << u"trash"_qs << QFile::decodeName(item.bytes());
        QProcess program;
        program.setProcessEnvironment(variables);
        program.start(u"strace"_qs, arguments);
        return program.waitForFinished() && program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0;
    }

    QList<QByteArray> filesInTrash() const { return home.names("home/.local/share/Trash/files"); }
    QList<QByteArray> infosInTrash() const { return home.names("home/.local/share/Trash/info"); }

    TemporaryHome home;
};

} // namespace

TEST_F(TrashInjectionTest, MovesWhereTheFileSystemKnowsNoExclusiveRename)
{
    const FilePath item = home.addFile("home/a", "text");
    home.addFile("home/.local/share/Trash/files/a", "older, and without info");

    EXPECT_TRUE(trash(item, {u"renameat2:error=EINVAL"_qs}));

    EXPECT_FALSE(itemExists(item));
    EXPECT_EQ(filesInTrash(), (QList<QByteArray>{"a", "a.2"}));
    EXPECT_EQ(infosInTrash(), QList<QByteArray>{"a.2.trashinfo"});
    EXPECT_EQ(home.contents("home/.local/share/Trash/files/a"), "older, and without info");
}

TEST_F(TrashInjectionTest, CopiesWhereTheKernelTakesTheTrashForAnotherVolumeAfterAll)
{
    home.addFile("home/item/file", "text");

    EXPECT_TRUE(trash(home.path("home/item"), {u"renameat2:error=EXDEV:when=1"_qs}));

    EXPECT_FALSE(home.exists("home/item"));
    EXPECT_EQ(home.contents("home/.local/share/Trash/files/item/file"), "text");
    EXPECT_EQ(infosInTrash(), QList<QByteArray>{"item.trashinfo"});
}

TEST_F(TrashInjectionTest, TakesTheInfoBackWhenTheMoveFails)
{
    const FilePath item = home.addFile("home/a", "text");

    EXPECT_FALSE(trash(item, {u"renameat2:error=EIO"_qs}));

    EXPECT_TRUE(itemExists(item));
    EXPECT_EQ(infosInTrash(), QList<QByteArray>());
}

TEST_F(TrashInjectionTest, NeverMovesBeforeTheInfoIsWritten)
{
    const FilePath item = home.addFile("home/a", "text");

    EXPECT_FALSE(trash(item, {u"write:error=EIO"_qs}));

    EXPECT_TRUE(itemExists(item));
    EXPECT_EQ(filesInTrash(), QList<QByteArray>());
    EXPECT_EQ(infosInTrash(), QList<QByteArray>());
}

TEST_F(TrashInjectionTest, DeletesNothingOfWhatItCopiedWhenTheCopyIsNotSafelyOnDisk)
{
    const FilePath item = home.addFile("home/a", "text");

    EXPECT_FALSE(trash(item, {u"renameat2:error=EXDEV:when=1"_qs, u"syncfs:error=EIO"_qs}));

    EXPECT_EQ(contentsOf(item), "text");
    EXPECT_EQ(filesInTrash(), QList<QByteArray>());
    EXPECT_EQ(infosInTrash(), QList<QByteArray>());
    EXPECT_EQ(home.names("home/.local/share/Trash"), (QList<QByteArray>{"files", "info"}));
}

TEST_F(TrashInjectionTest, TakesTheCopyBackWhenNothingOfTheItemCanBeDeleted)
{
    const FilePath item = home.addFile("home/a", "text");

    // The first is the item itself; what follows is our own clearing up.
    EXPECT_FALSE(trash(item, {u"renameat2:error=EXDEV:when=1"_qs, u"unlinkat:error=EPERM:when=2"_qs}));

    EXPECT_EQ(contentsOf(item), "text");
    EXPECT_EQ(filesInTrash(), QList<QByteArray>());
    EXPECT_EQ(infosInTrash(), QList<QByteArray>());
}
