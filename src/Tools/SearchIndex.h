#pragma once

#include "Tools/Caller.h"
#include "Tools/ProgramFolders.h"
#include "Tools/ToolEnd.h"
#include "Tools/ToolStep.h"

#include <QStringList>

namespace Quillmere {

/// What this machine has to find files by: the indexes of a user's files, which their desktop keeps, and the one of all
/// names.
class SearchIndex final
{
public:
    explicit SearchIndex(ProgramFolders programs = ProgramFolders::ofSystem());

    /// Lets each that is here begin anew: those of a user with the rights of @p caller, that of all names with ours.
    [[nodiscard]] QList<ToolStep> reset(const Caller &caller) const;
    /// The same, told. Needs root.
    [[nodiscard]] ToolEnd run(const Result<Caller> &caller) const;

private:
    ProgramFolders m_programs;
};

/// Carries out the command `mdutil`, of which there is `-E /`.
[[nodiscard]] ToolEnd runMdutil(const QStringList &arguments, const SearchIndex &index, const Result<Caller> &caller,
                                bool isRoot);

} // namespace Quillmere
