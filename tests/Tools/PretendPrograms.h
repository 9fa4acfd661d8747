#pragma once

#include "Tools/ProgramFolders.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Quillmere {

/// A folder of programs that write down how they are called.
class PretendPrograms
{
public:
    /// The program ends with @p end, a line of the shell.
    QString add(const QString &name, const QString &end = u"exit 0"_qs) const
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate));
        file.write(u"#!/bin/sh\necho \"${0##*/}\" \"$@\" >>'%1'\n%2\n"_qs.arg(record(), end).toUtf8());
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther
                            | QFile::ExeOther);
        return file.fileName();
    }

    [[nodiscard]] ProgramFolders folders() const { return ProgramFolders({m_folder.path()}); }
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    /// The calls, one a line, in their order.
    [[nodiscard]] QByteArray calls() const
    {
        QFile file(record());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    [[nodiscard]] QString record() const { return m_folder.filePath(u"record"_qs); }

    QTemporaryDir m_folder;
};

} // namespace Quillmere
