#pragma once

#include "Values/FilePath.h"

#include <QHash>
#include <QList>

namespace Quillmere {

/// An application as the desktop's own database shows it.
struct DesktopEntry
{
    QByteArray id; ///< Without ".desktop".
    FilePath file;
    QString name; ///< In the user's language.
    QString icon; ///< A name of the icon theme or an absolute path; may be empty.
    /// What is started, free of links; a text where that is what an interpreter runs. May be empty.
    FilePath executable;
    bool isPlain = false; ///< It is started without any argument but what it is to open.

    bool operator==(const DesktopEntry &) const = default;
};

/// What the desktop shows of the applications in @p folders, by the order of their ids. An entry of an earlier folder
/// hides those of its id in later ones, also when it is itself not shown.
[[nodiscard]] QList<DesktopEntry> readDesktopEntries(const QList<FilePath> &folders);

/// The files of all entries in @p folders by their ids, also of those that are not shown; of several of one id that of
/// the earliest folder.
[[nodiscard]] QHash<QByteArray, FilePath> desktopEntryFiles(const QList<FilePath> &folders);

/// The folders of desktop entries of this user, where XDG desktops keep them, the most important first.
[[nodiscard]] QList<FilePath> desktopEntryFolders(const FilePath &home);

/// When @p folders and those in them were last changed. Two of these that are equal mean that no entry has come, gone
/// or been replaced.
[[nodiscard]] QByteArray stateOfFolders(const QList<FilePath> &folders);

} // namespace Quillmere
