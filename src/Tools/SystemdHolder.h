#pragma once

#include "Tools/KeepAwakeHolder.h"

#include <QString>

namespace Quillmere {

/// The programs of systemd that the holder is made of.
struct SystemdPrograms
{
    QString run = u"/usr/bin/systemd-run"_qs;
    QString control = u"/usr/bin/systemctl"_qs;
    QString inhibit = u"/usr/bin/systemd-inhibit"_qs;
    QString sleep = u"/usr/bin/sleep"_qs;
};

/// A unit of systemd, which sees to it that there is one and that all of it ends.
class SystemdHolder final : public KeepAwakeHolder
{
public:
    explicit SystemdHolder(SystemdPrograms programs = {});

    [[nodiscard]] Result<bool> isRunning() const override;
    [[nodiscard]] Result<void> start() const override;
    [[nodiscard]] Result<void> stop() const override;

private:
    const SystemdPrograms m_programs;
};

} // namespace Quillmere
