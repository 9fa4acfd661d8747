#include "Services/StartupService.h"

#include "Utilities/PropertyList.h"
#include "Utilities/PropertyListLimits.h"
#include "Values/FileName.h"

namespace Quillmere {

namespace {

const QString label = u"Label"_qs;
const QString disabled = u"Disabled"_qs;
const QString runAtLoad = u"RunAtLoad"_qs;
const QString systemPrefix = u"com.apple."_qs;

StartupError cannotWrite(const FilePath &path)
{
    return {StartupError::CannotWrite,
            u"Failed to write plist at %1. You may need administrative permissions."_qs.arg(path.displayText())};
}

} // namespace

/// A row of the table of folders: what is true of the items in it, unless their label says otherwise.
struct StartupService::LaunchFolder
{
    FilePath path;
    StartupItemType type;
    RiskLevel riskLevel;
    bool isSystemItem;

    [[nodiscard]] StartupItem item(const QString &name, const FilePath &file) const
    {
        const bool isSystems = name.startsWith(systemPrefix);
        StartupItem item;
        item.name = name;
        item.type = type;
        item.path = file;
        item.riskLevel = isSystems ? RiskLevel::Safe : riskLevel;
        item.isSystemItem = isSystems || isSystemItem;
        return item;
    }
};

StartupService::StartupService(std::shared_ptr<const FileManager> files, std::shared_ptr<const StartupEntries> entries)
    : m_files(std::move(files))
    , m_entries(std::move(entries))
{
}

QList<StartupService::LaunchFolder> StartupService::launchFolders() const
{
    return {
        {m_files->homeDirectory().appending("Library/LaunchAgents"), StartupItemType::LaunchAgent, RiskLevel::Safe,
         false},
        {FilePath("/Library/LaunchAgents"), StartupItemType::LaunchAgent, RiskLevel::Medium, false},
        {FilePath("/Library/LaunchDaemons"), StartupItemType::LaunchDaemon, RiskLevel::High, true},
    };
}

QList<StartupItem> StartupService::loadStartupItems() const
{
    const QList<LaunchFolder> folders = launchFolders();
    QList<StartupItem> items;
    for (const LaunchFolder &folder : folders) {
        for (const DirectoryEntry &entry : m_files->contentsOfDirectory(folder.path, HiddenFiles::Skip).valueOr({})) {
            const std::optional<PropertyList> list
                = entry.path.pathExtension() == "plist" ? read(entry.path) : std::nullopt;
            if (!list)
                continue;
            StartupItem item = folder.item(
                list->string(label).value_or(FilePath::displayText(nameWithoutExtension(entry.path))), entry.path);
            item.isEnabled = !list->boolean(disabled).value_or(false);
            item.runsAtLogin = list->boolean(runAtLoad).value_or(false);
            items.append(item);
        }
    }
    for (const StartupEntry &entry : m_entries->entries()) {
        StartupItem item = folders.at(entry.scope == StartupEntry::Scope::User ? 0 : 1).item(entry.name, entry.path);
        item.isEnabled = entry.isEnabled;
        item.runsAtLogin = true;
        items.append(item);
    }
    return items;
}

std::optional<StartupError> StartupService::toggleItem(const StartupItem &item, bool enabled) const
{
    if (isSwitchedByOthers(item))
        return m_entries->setEnabled(item.path, enabled) ? std::nullopt : std::optional(cannotWrite(item.path));
    std::optional<PropertyList> list = read(item.path);
    if (!list)
        return StartupError{StartupError::CannotRead, u"Failed to load plist"_qs};
    list->setBoolean(disabled, !enabled);
    const QByteArray text = list->written(PropertyList::Form::Xml);
    // XML has no place for some characters that the other forms can hold, and would not be read again with them.
    // In a folder of the user's own, a file that is closed to the user could be replaced all the same.
    const bool isWritten = PropertyList::read(text) && m_files->isWritableFile(item.path)
        && m_files->writeFile(item.path, text, WriteMode::Atomic);
    return isWritten ? std::nullopt : std::optional(cannotWrite(item.path));
}

std::optional<PropertyList> StartupService::read(const FilePath &path) const
{
    const Result<QByteArray> bytes = m_files->contentsOfFile(path, PropertyListLimits::mostBytes);
    if (!bytes)
        return std::nullopt;
    Result<PropertyList> list = PropertyList::read(bytes.value());
    return list ? std::optional(std::move(list).value()) : std::nullopt;
}

} // namespace Quillmere
