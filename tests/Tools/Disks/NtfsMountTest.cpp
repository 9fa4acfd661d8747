#include "Tools/Disks/DisksFixture.h"

#include <QFile>

using namespace Quillmere;

namespace {

/// An NTFS volume on the stick, and programs for it that are shell texts.
class NtfsMountTest : public DisksTest
{
protected:
    void SetUp() override
    {
        DisksTest::SetUp();
        volume = addPartition("sdb", 3, "8:19", u"stick"_qs, u"ntfs"_qs, u"Windows"_qs, {});
        programs.driver = program("driver", "exit 0");
        programs.mountFolders = {FilePath(QFile::encodeName(folder.path()))};
    }

    FilePath program(const char *name, const QByteArray &end) const
    {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate));
        file.write("#!/bin/sh\necho \"${0##*/} $*\" >>'" + QFile::encodeName(record()) + "'\n" + end + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return FilePath(QFile::encodeName(file.fileName()));
    }
    [[nodiscard]] QString record() const { return folder.filePath(u"record"_qs); }
    [[nodiscard]] QByteArray calls() const
    {
        QFile file(record());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] QString place() const { return folder.filePath(u"stick"_qs); }
    ToolEnd mount()
    {
        return DiskAdministrator(tools(), programs)
            .carryOut(u"mount-ntfs"_qs, QStringList{place()} + volumeWords(volume))
            .value();
    }

    QTemporaryDir folder;
    NtfsPrograms programs;
    quint64 volume = 0;
};

struct ProbeCase
{
    const char *name;
    const char *end;
    const char16_t *message;
};

struct ProbeTest : NtfsMountTest, testing::WithParamInterface<ProbeCase>
{
};

} // namespace

TEST_P(ProbeTest, ExplainsWhatKeepsAVolumeFromBeingWrittenToAndMountsNothing)
{
    programs.probe = program("probe", GetParam().end);

    EXPECT_EQ(mount(), (ToolEnd{1, QString::fromUtf16(GetParam().message)}));

    EXPECT_EQ(calls(), "probe --readwrite /dev/sdb3\n");
    EXPECT_FALSE(QFile::exists(place()));
}

INSTANTIATE_TEST_SUITE_P(
    Ends, ProbeTest,
    testing::Values(ProbeCase{"Hibernated", "exit 14",
                              u"Windows is asleep on disk508s3, or was shut down fast. Start it there and shut it down "
                              "completely; until then nothing is changed on it."},
                    ProbeCase{"Unclean", "exit 15",
                              u"disk508s3 was not removed safely the last time. Let Windows check it; until then "
                              "nothing is changed on it."},
                    ProbeCase{"Corrupt", "echo 'The volume is corrupt.' >&2; exit 13",
                              u"disk508s3 cannot be mounted for writing: The volume is corrupt."},
                    ProbeCase{"Killed", "echo 'So far' >&2; kill -KILL $$",
                              u"disk508s3 cannot be mounted for writing: So far"}),
    [](const auto &info) { return info.param.name; });

TEST_F(NtfsMountTest, SaysThatTheDriverIsMissingWhereTheProbeIs)
{
    programs.probe = FilePath(QFile::encodeName(folder.filePath(u"missing"_qs)));

    EXPECT_EQ(mount(), (ToolEnd{1, u"ntfs-3g is not installed, so disk508s3 cannot be mounted with it."_qs}));
    EXPECT_EQ(calls(), "");
}

TEST_F(NtfsMountTest, MountsNothingWhereOthersThanRootMayChangeTheFolder)
{
    programs.probe = program("probe", "exit 0");

    const ToolEnd end = mount();

    EXPECT_EQ(end.status, 1);
    EXPECT_TRUE(end.message.startsWith(u"disk508s3 cannot be mounted at "_qs)) << qPrintable(end.message);
    EXPECT_EQ(calls(), "probe --readwrite /dev/sdb3\n");
}
