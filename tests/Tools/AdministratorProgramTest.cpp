#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/FileDescriptor.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <chrono>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr std::chrono::seconds patience{20};

/// The end of a full pipe that is written to: whoever writes there waits until the other end is read.
struct FullPipe
{
    FullPipe()
    {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        reading = FileDescriptor(ends[0]);
        writing = FileDescriptor(ends[1]);
        const QByteArray block(4096, '\0');
        ::fcntl(writing.number(), F_SETFL, O_NONBLOCK);
        while (::write(writing.number(), block.constData(), static_cast<size_t>(block.size())) > 0) { }
        ::fcntl(writing.number(), F_SETFL, 0);
    }

    FileDescriptor reading;
    FileDescriptor writing;
};

/// Whether nobody else has @p file locked before long.
bool isGivenBack(int file)
{
    const QDeadlineTimer deadline(patience);
    while (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (deadline.hasExpired())
            return false;
        ::usleep(5'000);
    }
    return true;
}

} // namespace

TEST(AdministratorProgramTest, LetsGoOfItsStandardInputAtItsStart)
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(u"lock"_qs));
    FileDescriptor held(::open(path.constData(), O_RDONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    ASSERT_EQ(::flock(held.number(), LOCK_EX), 0);
    FullPipe errors;
    // Without a verb all that it does is to say how it is used.
    const pid_t program = startChild([&] {
        ::dup2(held.number(), STDIN_FILENO);
        ::dup2(errors.writing.number(), STDERR_FILENO);
        ::execl(QUILLMERE_ADMINISTRATOR, QUILLMERE_ADMINISTRATOR, nullptr);
    });
    held = {};
    errors.writing = {};
    const FileDescriptor another(::open(path.constData(), O_RDONLY | O_CLOEXEC));

    EXPECT_TRUE(isGivenBack(another.number()));

    int status = -1;
    EXPECT_EQ(::waitpid(program, &status, WNOHANG), 0) << "It gave the lock back by ending.";
    errors.reading = {};
    EXPECT_EQ(::waitpid(program, &status, 0), program);
}
