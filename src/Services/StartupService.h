#pragma once

#include "Models/StartupItem.h"
#include "Platform/FileManager.h"
#include "Platform/StartupEntries.h"

#include <memory>

namespace Quillmere {

class PropertyList;

/// Why a startup item was not switched. For developers: people are told in the program's own words.
struct StartupError
{
    static constexpr QStringView domain = u"StartupService";

    enum Code { CannotRead = 1, CannotWrite = 2 };

    Code code = CannotRead;
    QString description;

    bool operator==(const StartupError &) const = default;
};

/// Lists what the system starts by itself, and switches each on or off for the next time that the system reads it:
/// nothing is started or stopped. Holds nothing but the ways to the machine, so it is copied like a value.
class StartupService
{
public:
    StartupService(std::shared_ptr<const FileManager> files, std::shared_ptr<const StartupEntries> entries);

    /// The launch property lists of the three launch folders, in the order of the folders and of their listings, and
    /// behind them what this platform adds. What cannot be listed or read is passed over. Any thread.
    [[nodiscard]] QList<StartupItem> loadStartupItems() const;
    /// Writes whether @p item is to be started into its file, whose other keys stay as they were. No privilege is asked
    /// for. Nothing when it was done.
    /// Takes no time for a property list, but may wait for others where isSwitchedByOthers().
    [[nodiscard]] std::optional<StartupError> toggleItem(const StartupItem &item, bool enabled) const;
    /// The platform has other programs of this machine switch @p item.
    [[nodiscard]] bool isSwitchedByOthers(const StartupItem &item) const { return m_entries->owns(item.path); }

private:
    struct LaunchFolder;

    [[nodiscard]] QList<LaunchFolder> launchFolders() const;
    [[nodiscard]] std::optional<PropertyList> read(const FilePath &path) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const StartupEntries> m_entries;
};

} // namespace Quillmere
