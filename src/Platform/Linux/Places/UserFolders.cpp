#include "Platform/Linux/Places/UserFolders.h"

#include <QList>

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

constexpr qsizetype longestFile = 64 * 1024;
constexpr std::array<const char *, 6> kinds = {"desktop", "documents", "download", "music", "pictures", "videos"};

/// The location in a line like XDG_MUSIC_DIR="$HOME/Lieder", as user-dirs.dirs(5) tells. Not valid when there is none.
QByteArray valueOf(const QByteArray &line, const QByteArray &variable)
{
    const QByteArray start = variable + "=\"";
    if (!line.startsWith(start) || !line.endsWith('"') || line.size() <= start.size())
        return {};
    QByteArray value;
    const QByteArray quoted = line.sliced(start.size(), line.size() - start.size() - 1);
    for (qsizetype i = 0; i < quoted.size(); ++i) {
        if (quoted.at(i) == '\\' && i + 1 < quoted.size())
            ++i;
        value.append(quoted.at(i));
    }
    return value;
}

FilePath locationOf(const QByteArray &value, const FilePath &home)
{
    const QByteArray homePrefix = "$HOME/";
    return value.startsWith(homePrefix) ? home.appending(value.sliced(homePrefix.size())).standardized()
                                        : FilePath(value).standardized();
}

} // namespace

UserFolders UserFolders::read(const FileManager &files, const FilePath &home, const FilePath &config)
{
    const FilePath file = config.appending("user-dirs.dirs");
    if (!files.isAnswering(file))
        return {};
    UserFolders folders;
    const QByteArray text = files.contentsOfFile(file).valueOr({}).left(longestFile);
    for (const QByteArray &line : text.split('\n')) {
        for (const char *kind : kinds) {
            const QByteArray value = valueOf(line.trimmed(), "XDG_" + QByteArray(kind).toUpper() + "_DIR");
            if (!value.startsWith('/') && !value.startsWith("$HOME/"))
                continue;
            const FilePath location = locationOf(value, home);
            // The home itself is how the file says that there is no such folder.
            if (location == home)
                folders.locations.remove(kind);
            else
                folders.locations.insert(kind, location);
        }
    }
    return folders;
}

} // namespace Quillmere
