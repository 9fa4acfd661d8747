#include "Platform/Linux/TemporaryHome.h"
#include "Platform/Linux/SpawnedProgram.h"

#include <QFileInfo>

#include <algorithm>
#include <cstdio>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

void makeFolders(const FilePath &folder)
{
    if (itemExists(folder))
        return;
    makeFolders(folder.deletingLastPathComponent());
    ::mkdir(folder.bytes().constData(), 0777);
}

} // namespace

TemporaryHome::TemporaryHome(const QString &parent)
    : m_folder(parent + u"/quillmere-test"_qs)
{
    m_folder.setAutoRemove(false);
    m_root = FilePath(QFileInfo(m_folder.path()).canonicalFilePath().toUtf8());
    addFolder("home");
}

TemporaryHome::~TemporaryHome()
{
    // Deeper trees and stranger rights than Qt's own cleaning takes.
    runProgram(u"/bin/chmod"_qs, {u"-R"_qs, u"u+rwx"_qs, m_folder.path()});
    runProgram(u"/bin/rm"_qs, {u"-rf"_qs, u"--one-file-system"_qs, m_folder.path()});
}

UserEnvironment TemporaryHome::environment() const
{
    return {path("home"), path("home/.local/share"), path("tmp"), ::geteuid()};
}

FilePath TemporaryHome::path(const QByteArray &relative) const
{
    return relative.isEmpty() ? m_root : m_root.appending(relative);
}

FilePath TemporaryHome::addFile(const QByteArray &relative, const QByteArray &contents) const
{
    addFolder(FilePath(relative).deletingLastPathComponent().bytes());
    writeFile(path(relative), contents);
    return path(relative);
}

FilePath TemporaryHome::addFolder(const QByteArray &relative) const
{
    makeFolders(path(relative));
    return path(relative);
}

FilePath TemporaryHome::addLink(const QByteArray &relative, const QByteArray &target) const
{
    addFolder(FilePath(relative).deletingLastPathComponent().bytes());
    static_cast<void>(::symlink(target.constData(), path(relative).bytes().constData()) == 0);
    return path(relative);
}

bool TemporaryHome::exists(const QByteArray &relative) const
{
    return itemExists(path(relative));
}

QByteArray TemporaryHome::contents(const QByteArray &relative) const
{
    return contentsOf(path(relative));
}

QList<QByteArray> TemporaryHome::names(const QByteArray &relative) const
{
    return namesIn(path(relative));
}

mode_t TemporaryHome::mode(const QByteArray &relative) const
{
    struct stat status = {};
    return ::lstat(path(relative).bytes().constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

bool itemExists(const FilePath &path)
{
    struct stat status = {};
    return ::lstat(path.bytes().constData(), &status) == 0;
}

QByteArray contentsOf(const FilePath &path)
{
    std::FILE *file = std::fopen(path.bytes().constData(), "re");
    if (!file)
        return {};
    QByteArray contents("");
    char piece[4096];
    while (const size_t got = std::fread(piece, 1, sizeof piece, file))
        contents.append(piece, static_cast<qsizetype>(got));
    std::fclose(file);
    return contents;
}

QList<QByteArray> namesIn(const FilePath &folder)
{
    QList<QByteArray> names;
    DIR *listing = ::opendir(folder.bytes().constData());
    while (const dirent *entry = listing ? ::readdir(listing) : nullptr) {
        const QByteArray name = entry->d_name;
        if (name != "." && name != "..")
            names.append(name);
    }
    if (listing)
        ::closedir(listing);
    std::sort(names.begin(), names.end());
    return names;
}

void writeFile(const FilePath &path, const QByteArray &contents)
{
    if (std::FILE *file = std::fopen(path.bytes().constData(), "we")) {
        std::fwrite(contents.constData(), 1, static_cast<size_t>(contents.size()), file);
        std::fclose(file);
    }
}

} // namespace Quillmere
