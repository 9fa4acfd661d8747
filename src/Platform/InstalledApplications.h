#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QList>
#include <QString>

#include <optional>

namespace Quillmere {

/// How an application can be taken off the machine.
enum class ApplicationRemoval {
    Trash, ///< Its parts go to the Trash.
    Command, ///< A command of the user's own package tool removes it.
    System, ///< It belongs to the system, and only the administrator's tools can remove it.
};

/// An application that lies in none of the folders of bundles.
struct ListedApplication
{
    QByteArray id; ///< What the platform knows it by, and what its files are named after.
    QString name; ///< In the user's language.
    QString identifier; ///< What the program knows it by.
    QString version; ///< Empty where nobody says.
    QString icon; ///< A name of the desktop's icon theme, or the absolute path of a picture. Empty when there is none.
    FilePath location; ///< What it is on disk.
    QList<FilePath> parts; ///< All that it alone is on disk. Empty for what the user may not remove.
    std::optional<qint64> size; ///< Bytes, where the platform says. Absent: its parts are to be measured.
    ApplicationRemoval removal = ApplicationRemoval::Trash;
    bool sharesData = false; ///< Another installation keeps its files under the same names.

    bool operator==(const ListedApplication &) const = default;
};

/// The applications that this platform adds behind the folders of bundles. Safe to call from any thread; may wait for
/// other programs.
class InstalledApplications
{
public:
    virtual ~InstalledApplications() = default;

    /// In the order in which they follow the bundles, each once.
    [[nodiscard]] virtual QList<ListedApplication> applications() const = 0;
    /// The user's files that belong to @p application by their exact names, and exist. Nothing that others share, which
    /// is all where it shares its data, and nothing outside the folders in which applications keep their files,
    /// whatever it calls itself.
    [[nodiscard]] virtual QList<FilePath> leftoversOf(const ListedApplication &application) const = 0;
    /// Takes it off the machine. Parts that have gone already are passed over; the first failure ends it. Fails with
    /// NotSupported for what belongs to the system.
    [[nodiscard]] virtual Result<void> uninstall(const ListedApplication &application) const = 0;
};

} // namespace Quillmere
