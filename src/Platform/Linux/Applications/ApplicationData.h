#pragma once

#include "Values/FilePath.h"

#include <QList>

namespace Quillmere {

/// The contents of Applications.json. Immutable; any thread.
struct ApplicationData
{
    struct Identity
    {
        QByteArray identifier;
        QList<QByteArray> desktopIds;
        QList<QByteArray> executables; ///< Patterns of whole paths.
    };

    QList<Identity> identities;
    QList<QByteArray> sharedPrograms; ///< Patterns of names.
    QList<QByteArray> sandboxPrograms; ///< Names.
    QList<QByteArray> sharedFolders; ///< "~" stands for the home.
    QList<QByteArray> sharedNames; ///< Patterns of names.

    /// What is compiled into the program. Built once, on first use.
    [[nodiscard]] static const ApplicationData &builtIn();

    /// What the program calls the application that the desktop calls @p desktopId.
    [[nodiscard]] QByteArray identifierOf(const QByteArray &desktopId) const;
    /// What the desktop may call the application that the program knows by @p identifier, the likeliest first.
    [[nodiscard]] QList<QByteArray> desktopIdsOf(const QByteArray &identifier) const;
    /// The identity whose program @p executable is; none is nullptr.
    [[nodiscard]] const Identity *identityOfExecutable(const FilePath &executable) const;
    [[nodiscard]] bool isSharedProgram(const FilePath &executable) const;
    /// It stands around an application and is none itself.
    [[nodiscard]] bool isSandboxProgram(const FilePath &executable) const;
    /// Whether files called @p name, in the folders where applications keep theirs, belong to many of them.
    [[nodiscard]] bool isSharedName(const QByteArray &name) const;
    /// The folder that holds @p executable and nothing of other applications; empty when it lies among others.
    [[nodiscard]] FilePath installFolderOf(const FilePath &executable, const FilePath &home) const;
};

} // namespace Quillmere
