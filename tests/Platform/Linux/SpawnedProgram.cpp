#include "Platform/Linux/SpawnedProgram.h"

#include <QFile>

#include <array>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillmere {

namespace {

QByteArray readToTheEnd(int pipe)
{
    QByteArray text;
    std::array<char, 4096> buffer = {};
    for (ssize_t size = 0; (size = ::read(pipe, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), size);
    return text;
}

} // namespace

int runProgram(const QString &program, const QStringList &arguments, QByteArray *output)
{
    QByteArrayList texts = {QFile::encodeName(program)};
    for (const QString &argument : arguments)
        texts.append(QFile::encodeName(argument));
    std::vector<char *> pointers;
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    std::array<int, 2> ends = {-1, -1};
    posix_spawn_file_actions_t actions = {};
    ::posix_spawn_file_actions_init(&actions);
    if (output && ::pipe2(ends.data(), O_CLOEXEC) == 0)
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    pid_t child = -1;
    const bool isStarted = ::posix_spawnp(&child, pointers[0], &actions, nullptr, pointers.data(), environ) == 0;
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (output)
        *output += readToTheEnd(ends[0]);
    ::close(ends[0]);
    int status = 0;
    return isStarted && ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace Quillmere
