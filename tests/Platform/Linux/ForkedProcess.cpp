#include "Platform/Linux/ForkedProcess.h"

#include <array>
#include <csignal>
#include <cstring>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr unsigned nobody = 65534;

std::string readAll(int descriptor)
{
    std::string text;
    std::array<char, 256> block{};
    for (ssize_t count = 0; (count = ::read(descriptor, block.data(), block.size())) > 0;)
        text.append(block.data(), static_cast<std::size_t>(count));
    return text;
}

} // namespace

std::string answerOfChild(const std::function<std::string()> &body)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0)
        return "no pipe";
    const pid_t child = startChild([&] {
        const std::string answer = body();
        if (::write(pipe[1], answer.data(), answer.size()) != static_cast<ssize_t>(answer.size()))
            ::_exit(1);
    });
    ::close(pipe[1]);
    const std::string answer = readAll(pipe[0]);
    ::close(pipe[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? answer : "ended with status " + std::to_string(status);
}

pid_t startChild(const std::function<void()> &body)
{
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        ::_exit(0);
    }
    return child;
}

void killChild(pid_t child)
{
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

bool becomeOrdinaryUser()
{
    return ::geteuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0);
}

bool mountSmallDisk(const std::string &folder, int bytes)
{
    const int ownUser = ::geteuid() == 0 ? 0 : CLONE_NEWUSER;
    return ::unshare(CLONE_NEWNS | ownUser) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && ::mount("tmpfs", folder.c_str(), "tmpfs", 0, ("size=" + std::to_string(bytes)).c_str()) == 0;
}

} // namespace Quillmere
