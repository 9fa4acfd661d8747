#include "Platform/Linux/Files/LinkResolution.h"

#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <QList>

#include <cerrno>
#include <vector>

#include <fcntl.h>

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

FilePath joined(const std::vector<QByteArray> &names)
{
    QByteArray path = "/";
    for (const QByteArray &name : names)
        path += name + '/';
    return FilePath(path).standardized();
}

/// @p reached with the names after it, none of which is looked at.
FilePath asWritten(std::vector<QByteArray> reached, const Waiting &waiting)
{
    reached.insert(reached.end(), waiting.rbegin(), waiting.rend());
    return joined(reached);
}

/// One step of the way; nothing open, with EXDEV in errno, where it would lead into a mount.
FileDescriptor step(const FileDescriptor &folder, const QByteArray &name, bool intoMounts)
{
    // The way up leads to where the way down came through.
    const quint64 resolve = intoMounts || name == ".." ? 0 : RESOLVE_NO_XDEV;
    return openAt(folder.number(), name, O_PATH | O_NOFOLLOW, resolve);
}

} // namespace

std::optional<FilePath> resolveLinks(const FilePath &path, const MayEnter &mayEnter)
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
        FileDescriptor next = step(folder, name, !mayEnter);
        if (!next.isOpen() && errno == EXDEV) {
            const FilePath mountPoint = joined(reached).appending(name);
            if (!mayEnter(mountPoint)) {
                reached.push_back(name);
                return asWritten(std::move(reached), waiting);
            }
            next = step(folder, name, true);
        }
        if (!next.isOpen())
            return std::nullopt;
        if (isLink(next.number())) {
            const std::optional<QByteArray> target = textOfLink(next.number(), {});
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
    return joined(reached);
}

} // namespace Quillmere
