#pragma once

#include "Tools/KeepAwakeHolder.h"
#include "Values/FilePath.h"

#include <QString>

namespace Quillmere {

/// A process of our own in a session of its own, known by its lock: for machines without systemd.
class LockedHolder final : public KeepAwakeHolder
{
public:
    /// @p program does what HeldInhibitor does; it is given @p runFolder.
    LockedHolder(QString program, FilePath runFolder);

    [[nodiscard]] Result<bool> isRunning() const override;
    [[nodiscard]] Result<void> start() const override;
    [[nodiscard]] Result<void> stop() const override;

private:
    const QString m_program;
    const FilePath m_runFolder;
};

} // namespace Quillmere
