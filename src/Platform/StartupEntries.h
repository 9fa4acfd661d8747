#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QList>
#include <QString>

namespace Quillmere {

/// Something that this platform starts by itself, beside the program's own folders of launch property lists.
struct StartupEntry
{
    /// Who put it there, and for whom.
    enum class Scope { User, AllUsers };

    FilePath path; ///< The file that it comes from.
    QString name; ///< As people know it, in their language where the file says so.
    Scope scope = Scope::User;
    bool isEnabled = true;

    bool operator==(const StartupEntry &) const = default;
};

/// The startup entries of this platform. Safe to call from any thread.
class StartupEntries
{
public:
    virtual ~StartupEntries() = default;

    /// Those that would start in this session or can be made to, in an order that does not depend on which are enabled.
    /// What cannot be read or asked adds nothing.
    [[nodiscard]] virtual QList<StartupEntry> entries() const = 0;
    /// Whether the file at @p path is of a kind that is switched here, and not by rewriting it as a property list.
    [[nodiscard]] virtual bool owns(const FilePath &path) const = 0;
    /// Enables or disables the entry that comes from @p path, from the next login on: nothing is started or stopped. No
    /// privilege is asked for. Only when it owns the path.
    [[nodiscard]] virtual Result<void> setEnabled(const FilePath &path, bool enabled) const = 0;
};

} // namespace Quillmere
