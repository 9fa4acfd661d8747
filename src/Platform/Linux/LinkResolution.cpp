#include "Platform/Linux/LinkResolution.h"

#include "Platform/Linux/OpenAt.h"

#include <QList>

#include <array>
#include <climits>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr int mostLinksFollowed = 32;

/// The names still to be passed, the next one last.
using Waiting = std::vector<QByteArray>;

void putBefore(Waiting &waiting, const QByteArray &path)
{
    const QList<QByteArray> names = path.split('/');
    for (auto name = names.crbegin(); name != names.crend(); ++name) {
        if (!name->isEmpty() && *name != ".")
            waiting.push_back(*name);
    }
}

std::optional<QByteArray> targetOf(const FileDescriptor &link)
{
    std::array<char, PATH_MAX> text;
    const ssize_t length = ::readlinkat(link.number(), "", text.data(), text.size());
    return length > 0 ? std::optional(QByteArray(text.data(), length)) : std::nullopt;
}

bool isLink(const FileDescriptor &item)
{
    struct stat status = {};
    return ::fstat(item.number(), &status) == 0 && S_ISLNK(status.st_mode);
}

} // namespace

std::optional<FilePath> resolveLinks(const FilePath &path)
{
    if (!path.bytes().startsWith('/') || path.bytes().contains('\0'))
        return std::nullopt;
    Waiting waiting;
    putBefore(waiting, path.bytes());
    FileDescriptor folder = openAt(AT_FDCWD, "/", O_PATH | O_DIRECTORY);
    std::vector<QByteArray> reached;
    int links = 0;
    while (!waiting.empty()) {
        const QByteArray name = waiting.back();
        waiting.pop_back();
        FileDescriptor next = openAt(folder.number(), name, O_PATH | O_NOFOLLOW);
        if (!next.isOpen())
            return std::nullopt;
        if (isLink(next)) {
            const std::optional<QByteArray> target = targetOf(next);
            if (!target || ++links > mostLinksFollowed)
                return std::nullopt;
            putBefore(waiting, *target);
            if (target->startsWith('/')) {
                folder = openAt(AT_FDCWD, "/", O_PATH | O_DIRECTORY);
                reached.clear();
            }
            continue;
        }
        folder = std::move(next);
        if (name != "..")
            reached.push_back(name);
        else if (!reached.empty())
            reached.pop_back();
    }
    QByteArray resolved = "/";
    for (const QByteArray &name : reached)
        resolved += name + '/';
    return FilePath(resolved).standardized();
}

} // namespace Quillmere
