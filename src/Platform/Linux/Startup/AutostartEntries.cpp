#include "Platform/Linux/Startup/AutostartEntries.h"

#include "Platform/Linux/Applications/DesktopEntryText.h"
#include "Values/FileName.h"

#include <QCryptographicHash>

#include <algorithm>

namespace Quillmere {

namespace {

const QByteArray hidden = "Hidden";
const QByteArray enabledKey = "X-GNOME-Autostart-enabled";
// Stands in copies of the system's entries that were made here, with the sum of the rest. As long as it fits, the copy
// is as it was made, and ours to renew or to take away, whatever the system's entry has become since.
const QByteArray copyKey = "X-Quillmere-Copy";

bool isOn(const DesktopEntryText &entry)
{
    return entry.isSound() && !entry.boolean(hidden).value_or(false) && entry.boolean(enabledKey).value_or(true);
}

/// Something that can be started, whatever it is.
bool isComplete(const DesktopEntryText &entry)
{
    const bool hasProgram
        = !entry.value("Exec").value_or(QByteArray()).isEmpty() || entry.boolean("DBusActivatable").value_or(false);
    return entry.value("Type") == "Application" && hasProgram;
}

DesktopEntryText switched(DesktopEntryText entry, bool enabled)
{
    // Every desktop obeys this one. GNOME's own key alone would leave the others starting it.
    if (!enabled || entry.boolean(hidden))
        entry.setBoolean(hidden, !enabled);
    if (enabled && entry.boolean(enabledKey))
        entry.setBoolean(enabledKey, true);
    return entry;
}

/// Of all but the sum itself.
QByteArray sumOf(DesktopEntryText entry)
{
    entry.remove(copyKey);
    return QCryptographicHash::hash(entry.text(), QCryptographicHash::Sha256).toHex();
}

DesktopEntryText copyOf(const DesktopEntryText &system, bool enabled)
{
    DesktopEntryText copy = switched(system, enabled);
    // The new line may end a text that had no end, which the sum is to see.
    copy.setPlain(copyKey, {});
    copy.setPlain(copyKey, sumOf(copy));
    return copy;
}

bool isOurs(const DesktopEntryText &entry)
{
    return entry.value(copyKey) == sumOf(entry);
}

} // namespace

AutostartEntries::AutostartEntries(std::shared_ptr<const FileManager> files, BaseDirectories::Environment environment,
                                   QList<QByteArray> languages)
    : m_files(std::move(files))
    , m_environment(std::move(environment))
    , m_languages(std::move(languages))
    , m_ownFolder(BaseDirectories::of(m_files->homeDirectory(), m_environment).config.appending("autostart"))
{
    for (const FilePath &config : BaseDirectories::systemConfig(m_environment)) {
        if (config.appending("autostart") != m_ownFolder)
            m_systemFolders.append(config.appending("autostart"));
    }
}

QList<StartupEntry> AutostartEntries::entries() const
{
    QList<QByteArray> systemNames;
    for (const FilePath &folder : m_systemFolders)
        systemNames += namesIn(folder);
    std::ranges::sort(systemNames);
    systemNames.erase(std::unique(systemNames.begin(), systemNames.end()), systemNames.end());

    QList<StartupEntry> found;
    const auto add = [&found](const std::optional<StartupEntry> &entry) {
        if (entry)
            found.append(*entry);
    };
    for (const QByteArray &name : namesIn(m_ownFolder)) {
        if (!std::ranges::binary_search(systemNames, name))
            add(ownEntry(name));
    }
    for (const QByteArray &name : std::as_const(systemNames))
        add(systemEntry(name));
    return found;
}

bool AutostartEntries::owns(const FilePath &path) const
{
    const FilePath folder = path.deletingLastPathComponent();
    return path.pathExtension() == "desktop" && (folder == m_ownFolder || m_systemFolders.contains(folder));
}

Result<void> AutostartEntries::setEnabled(const FilePath &path, bool enabled) const
{
    const QByteArray name = path.lastPathComponent();
    const FilePath own = m_ownFolder.appending(name);
    const DesktopEntryText system = read(systemFile(name));
    if (m_files->attributesOfItem(own))
        return setOwnEnabled(own, system, enabled);
    if (!system.isSound())
        return Failure{Failure::Kind::NotFound, path, u"No desktop entry"_qs};
    return isOn(system) == enabled ? Result<void>() : write(own, copyOf(system, enabled).text());
}

Result<void> AutostartEntries::setOwnEnabled(const FilePath &own, const DesktopEntryText &system, bool enabled) const
{
    const Result<DesktopEntryText> found = DesktopEntryText::read(*m_files, own);
    if (!found)
        return found.failure();
    DesktopEntryText entry = found.value();
    if (!entry.isSound())
        return Failure{Failure::Kind::Malformed, own, u"No desktop entry"_qs};
    const bool isRenewable = system.isSound() && isOurs(entry);
    if (system.isSound() && isOn(system) == enabled && (isRenewable || !entry.saysMoreThan(hidden))) {
        // Removal refuses a location below a link.
        const FilePath folder = m_files->resolvingSymlinks(m_ownFolder);
        if (m_files->removeItem(folder.appending(own.lastPathComponent())))
            return {};
    }
    if (isRenewable)
        return write(own, copyOf(system, enabled).text());
    // What says only that the system's is not to start could not start anything by being turned around.
    if (enabled && !isComplete(entry))
        entry.addMissing(system);
    return write(own, switched(entry, enabled).text());
}

QList<QByteArray> AutostartEntries::namesIn(const FilePath &folder) const
{
    QList<QByteArray> names;
    for (const DirectoryEntry &entry : m_files->contentsOfDirectory(folder, HiddenFiles::Skip).valueOr({})) {
        if (entry.path.pathExtension() == "desktop")
            names.append(entry.path.lastPathComponent());
    }
    std::ranges::sort(names);
    return names;
}

FilePath AutostartEntries::systemFile(const QByteArray &name) const
{
    for (const FilePath &folder : m_systemFolders) {
        if (m_files->attributesOfItem(folder.appending(name)))
            return folder.appending(name);
    }
    return {};
}

DesktopEntryText AutostartEntries::read(const FilePath &file) const
{
    return file.isEmpty() ? DesktopEntryText() : DesktopEntryText::read(*m_files, file).valueOr(DesktopEntryText());
}

std::optional<StartupEntry> AutostartEntries::ownEntry(const QByteArray &name) const
{
    const FilePath file = m_ownFolder.appending(name);
    const DesktopEntryText entry = read(file);
    if (!startsHere(entry))
        return std::nullopt;
    return StartupEntry{file, nameOf(entry, file), StartupEntry::Scope::User, isOn(entry)};
}

std::optional<StartupEntry> AutostartEntries::systemEntry(const QByteArray &name) const
{
    const FilePath file = systemFile(name);
    const FilePath own = m_ownFolder.appending(name);
    const bool isOverridden = m_files->attributesOfItem(own).isOk();
    const DesktopEntryText brought = read(file);
    const DesktopEntryText effective = isOverridden ? read(own) : brought;
    const DesktopEntryText &described = isComplete(effective) ? effective : brought;
    if (!startsHere(described))
        return std::nullopt;
    return StartupEntry{file, nameOf(described, file), StartupEntry::Scope::AllUsers,
                        isComplete(effective) && isOn(effective)};
}

bool AutostartEntries::startsHere(const DesktopEntryText &entry) const
{
    const QByteArray tried = entry.value("TryExec").value_or(QByteArray());
    return isComplete(entry) && isForThisDesktop(entry) && (tried.isEmpty() || hasProgram(tried));
}

/// Among a desktop's several names, the first that either list holds decides.
bool AutostartEntries::isForThisDesktop(const DesktopEntryText &entry) const
{
    const QList<QByteArray> only = entry.list("OnlyShowIn");
    const QList<QByteArray> notIn = entry.list("NotShowIn");
    for (const QByteArray &desktop : m_environment("XDG_CURRENT_DESKTOP").split(':')) {
        if (only.contains(desktop))
            return true;
        if (notIn.contains(desktop))
            return false;
    }
    return !entry.value("OnlyShowIn");
}

bool AutostartEntries::hasProgram(const QByteArray &tried) const
{
    if (tried.startsWith('/'))
        return m_files->isExecutableFile(FilePath(tried));
    const QList<QByteArray> folders = m_environment("PATH").split(':');
    return std::ranges::any_of(folders, [&](const QByteArray &folder) {
        return folder.startsWith('/') && m_files->isExecutableFile(FilePath(folder).appending(tried));
    });
}

QString AutostartEntries::nameOf(const DesktopEntryText &entry, const FilePath &file) const
{
    const QByteArray name = entry.value("Name", m_languages).value_or(QByteArray());
    return FilePath::displayText(name.isEmpty() ? nameWithoutExtension(file) : name);
}

Result<void> AutostartEntries::write(const FilePath &file, const QByteArray &text) const
{
    const Result<void> folder = m_files->createDirectory(m_ownFolder, Intermediates::Create);
    if (!folder)
        return folder;
    // What a link leads to is not ours, and stays: the link gives way to a file.
    const Result<FileAttributes> existing = m_files->attributesOfItem(file);
    if (existing && existing.value().type == EntryKind::Regular && !m_files->isWritableFile(file))
        return Failure{Failure::Kind::NoPermission, file, {}};
    return m_files->writeFile(file, text, WriteMode::Atomic);
}

} // namespace Quillmere
