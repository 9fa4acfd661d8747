#include "Platform/Linux/Applications/DesktopEntry.h"

#include "Platform/Linux/Applications/ApplicationData.h"
#include "Platform/Linux/Places/BaseDirectories.h"

#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>

#include <gio/gdesktopappinfo.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

template<auto release>
struct Release
{
    template<typename T>
    void operator()(T *object) const
    {
        release(object);
    }
};

using AppInfo = std::unique_ptr<GDesktopAppInfo, Release<g_object_unref>>;
using Text = std::unique_ptr<char, Release<g_free>>;
using CharBlock = std::unique_ptr<char, Release<std::free>>;
using TextList = std::unique_ptr<char *, Release<g_strfreev>>;

FilePath withoutLinks(const char *path)
{
    const CharBlock target(::realpath(path, nullptr));
    return target ? FilePath(QByteArray(target.get())) : FilePath();
}

QList<QByteArray> wordsOf(const char *command)
{
    int count = 0;
    char **raw = nullptr;
    if (!command || !g_shell_parse_argv(command, &count, &raw, nullptr))
        return {};
    const TextList words(raw);
    return {raw, raw + count};
}

/// The place in @p words of what they start: behind an interpreter the first existing absolute path, for the
/// interpreter itself is nobody's. -1 when it cannot be told.
qsizetype placeOfProgram(const QList<QByteArray> &words)
{
    const ApplicationData &data = ApplicationData::builtIn();
    const Text found(words.isEmpty() ? nullptr : g_find_program_in_path(words.first().constData()));
    if (!found)
        return -1;
    if (!data.isSharedProgram(withoutLinks(found.get())) && !data.isSharedProgram(FilePath(words.first())))
        return 0;
    for (qsizetype place = 1; place < words.size(); ++place) {
        const FilePath path = words.at(place).startsWith('/') ? withoutLinks(words.at(place).constData()) : FilePath();
        if (!path.isEmpty() && !data.isSharedProgram(path))
            return place;
    }
    return -1;
}

void setProgram(DesktopEntry &entry, const QList<QByteArray> &words)
{
    const qsizetype place = placeOfProgram(words);
    if (place < 0)
        return;
    const Text found(g_find_program_in_path(words.at(place).constData()));
    entry.executable = withoutLinks(found ? found.get() : words.at(place).constData());
    entry.isPlain = std::all_of(words.cbegin() + place + 1, words.cend(),
                                [](const QByteArray &word) { return word.startsWith('%'); });
}

std::optional<DesktopEntry> readEntry(const QByteArray &id, const QByteArray &file)
{
    const AppInfo info(g_desktop_app_info_new_from_filename(file.constData()));
    if (!info || g_desktop_app_info_get_nodisplay(info.get()) || g_desktop_app_info_get_is_hidden(info.get()))
        return std::nullopt;
    GAppInfo *application = G_APP_INFO(info.get());
    const Text icon(g_desktop_app_info_get_string(info.get(), G_KEY_FILE_DESKTOP_KEY_ICON));
    DesktopEntry entry{
        id, FilePath(file), QString::fromUtf8(g_app_info_get_name(application)), QString::fromUtf8(icon.get()),
        {}, false};
    setProgram(entry, wordsOf(g_app_info_get_commandline(application)));
    return entry;
}

} // namespace

QHash<QByteArray, FilePath> desktopEntryFiles(const QList<FilePath> &folders)
{
    QHash<QByteArray, FilePath> found;
    for (const FilePath &folder : folders) {
        const QString top = QFile::decodeName(folder.bytes());
        QDirIterator files(top, {u"*.desktop"_qs}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QByteArray file = QFile::encodeName(files.next());
            // Folders below the top become part of the id: desktops know the entry by it.
            const QByteArray id = file.sliced(folder.bytes().size() + 1).chopped(8).replace('/', '-');
            if (!found.contains(id))
                found.insert(id, FilePath(file));
        }
    }
    return found;
}

QList<DesktopEntry> readDesktopEntries(const QList<FilePath> &folders)
{
    QList<DesktopEntry> entries;
    const QHash<QByteArray, FilePath> files = desktopEntryFiles(folders);
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (std::optional<DesktopEntry> entry = readEntry(file.key(), file.value().bytes()))
            entries.append(*std::move(entry));
    }
    std::ranges::sort(entries, {}, &DesktopEntry::id);
    return entries;
}

QList<FilePath> desktopEntryFolders(const FilePath &home)
{
    QList<FilePath> folders = {BaseDirectories::of(home).data.appending("applications")};
    for (const FilePath &folder : BaseDirectories::systemData())
        folders.append(folder.appending("applications"));
    return folders;
}

QByteArray stateOfFolders(const QList<FilePath> &folders)
{
    QByteArray state;
    const auto add = [&state](const QByteArray &folder) {
        struct stat status = {};
        if (::stat(folder.constData(), &status) != 0)
            return;
        state += folder + '\0' + QByteArray::number(status.st_mtim.tv_sec) + '.'
            + QByteArray::number(status.st_mtim.tv_nsec) + ' ' + QByteArray::number(status.st_ino) + '\n';
    };
    for (const FilePath &folder : folders) {
        add(folder.bytes());
        QDirIterator inside(QFile::decodeName(folder.bytes()), QDir::Dirs | QDir::NoDotAndDotDot,
                            QDirIterator::Subdirectories);
        while (inside.hasNext())
            add(QFile::encodeName(inside.next()));
    }
    return state;
}

} // namespace Quillmere
