#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/Places/BaseDirectories.h"
#include "Platform/Linux/Places/PlacePattern.h"
#include "Platform/Linux/Places/PlaceSearch.h"
#include "Platform/Linux/Places/PlacesData.h"
#include "Platform/Places.h"

#include <memory>

namespace Quillmere {

/// The rows and kept places of Places.json, filled in with the folders of this user as they are when it is made.
/// No two rows offer the same thing, whatever links lead to it.
class LinuxPlaces final : public Places
{
public:
    explicit LinuxPlaces(std::shared_ptr<const FileManager> files,
                         const BaseDirectories::Environment &environment = qgetenv,
                         const PlacesData &data = PlacesData::builtIn());

    [[nodiscard]] QList<PlaceRow> rowsBehind(PlaceTable table) const override { return m_rows.value(table); }
    [[nodiscard]] QList<PlaceEntry> entriesBehind(const QString &list) const override;
    /// Beside the kept places themselves: what holds the root of another row, what holds the socket of a running
    /// program, what lies in the temporary directory and belongs to somebody else, and what lies on a volume that does
    /// not answer.
    using Places::reasonToKeep;
    [[nodiscard]] std::optional<QString> reasonToKeep(const FilePath &item,
                                                      const Cancellation &cancellation) const override;

private:
    /// A folder that places begin with.
    struct Base
    {
        FilePath written;
        FilePath actual; ///< With its links followed.
    };

    struct RefusedRoot
    {
        FilePath actual; ///< With its links followed.
        bool within = false;
    };

    struct Kept
    {
        PlacePattern pattern;
        QString reason;
    };

    void takeBases(const BaseDirectories::Environment &environment, const PlacesData &data);
    void takeBase(const QByteArray &name, const FilePath &folder);
    void takeRefusedRoots(const PlacesData &data);
    void takeUserFolders(const FilePath &home, const FilePath &config);
    void takeVariables(const BaseDirectories::Environment &environment, const PlacesData &data);
    void takeRows(const PlacesData &data);
    void takeKept(const PlacesData &data);
    [[nodiscard]] FilePath location(const PlacesData::Place &place) const;
    [[nodiscard]] QList<PlacePattern> patterns(const PlacesData::Place &place) const;
    [[nodiscard]] bool isMeant(const PlacesData::ListRow &row, const FilePath &path) const;
    [[nodiscard]] bool mayBeRoot(const FilePath &actual) const;

    void addKept(PlaceSearch &search, const FilePath &writtenItem) const;
    /// What is known without a look into @p item.
    [[nodiscard]] std::optional<QString> reasonFromOutside(const FilePath &item) const;
    [[nodiscard]] bool isTemporary(const FilePath &item) const;

    std::shared_ptr<const FileManager> m_files;
    QHash<QByteArray, Base> m_bases;
    QHash<PlaceTable, QList<PlaceRow>> m_rows;
    QHash<QString, QList<PlacesData::ListRow>> m_lists;
    QList<RefusedRoot> m_refusedRoots; ///< Whose bases are known so far.
    QList<FilePath> m_roots; ///< Of all rows, the program's own tables included.
    QList<Kept> m_kept;
    bool m_offersTemporary = true;
};

} // namespace Quillmere
