#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/HistoryService.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr int pageBytes = 4096;

/// The history of a home that is a small disk of its own, for tests within inMountNamespace().
class HistoryOnDiskTest : public testing::Test
{
protected:
    [[nodiscard]] bool mountHome() const { return mountTmpfs(home.path("home"), "size=256k"); }

    /// A record that takes up a little more than @p bytes in the file.
    static OperationLog recordOf(int bytes)
    {
        OperationLog log;
        log.date = QDateTime({2026, 11, 21}, {12, 0}, Qt::UTC);
        log.errors = {QString(bytes, u'x')};
        return log;
    }

    /// Leaves room for that many pages on the disk.
    void fillUpTo(int freePages) const
    {
        const QByteArray filler = home.path("home/filler").bytes();
        const int file = ::open(filler.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        const QByteArray page(pageBytes, 'f');
        off_t size = 0;
        while (::write(file, page.constData(), pageBytes) == pageBytes)
            size += pageBytes;
        EXPECT_EQ(::ftruncate(file, size - freePages * pageBytes), 0);
        ::close(file);
    }

    [[nodiscard]] QByteArray contents() const { return home.contents(place); }

    const QByteArray place = "home/Library/Application Support/Quillmere/history.json";
    TemporaryHome home;
    HistoryService history{std::make_shared<LinuxFileManager>(home.environment())};
};

} // namespace

TEST_F(HistoryOnDiskTest, LosesNoRecordWhateverRoomTheDiskHasLeft)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    inMountNamespace([this] {
        ASSERT_TRUE(mountHome());
        for (int record = 0; record < 3; ++record)
            history.save(recordOf(3000));
        int failed = 0;
        int saved = 0;
        for (int freePages = 0; freePages < 8; ++freePages) {
            const QList<OperationLog> before = history.loadHistory();
            const QByteArray textBefore = contents();
            const OperationLog added = recordOf(5 * pageBytes);
            fillUpTo(freePages);
            testing::internal::CaptureStdout();

            history.save(added);

            const std::string printed = testing::internal::GetCapturedStdout();
            if (printed.empty()) {
                ++saved;
                EXPECT_EQ(history.loadHistory(), before + QList{added}) << freePages << " pages were free";
            } else {
                ++failed;
                EXPECT_THAT(printed, testing::StartsWith("Failed to save history: "));
                EXPECT_EQ(contents(), textBefore) << freePages << " pages were free";
            }
        }
        EXPECT_GT(failed, 2);
        EXPECT_GT(saved, 1);
    });
}

TEST_F(HistoryOnDiskTest, TakesTheNextRecordOnceThereIsRoomAgain)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    inMountNamespace([this] {
        ASSERT_TRUE(mountHome());
        const OperationLog first = recordOf(100);
        const OperationLog second = recordOf(100);
        history.save(first);
        fillUpTo(0);
        testing::internal::CaptureStdout();
        history.save(recordOf(2 * pageBytes));
        EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr("history.json"));

        ASSERT_EQ(::unlink(home.path("home/filler").bytes().constData()), 0);
        history.save(second);

        EXPECT_EQ(history.loadHistory(), (QList{first, second}));
        EXPECT_EQ(home.names("home/Library/Application Support/Quillmere"), QList<QByteArray>{"history.json"});
    });
}

TEST_F(HistoryOnDiskTest, IsWrittenInPlaceSoThatItsOtherNamesShowTheNewRecord)
{
    history.save(recordOf(10));
    ASSERT_EQ(::link(home.path(place).bytes().constData(), home.path("other").bytes().constData()), 0);
    ASSERT_EQ(::chmod(home.path(place).bytes().constData(), 0640), 0);

    history.save(recordOf(10));

    EXPECT_EQ(home.contents("other"), contents());
    EXPECT_EQ(history.loadHistory().size(), 2);
    EXPECT_EQ(home.mode(place), 0640u);
}
