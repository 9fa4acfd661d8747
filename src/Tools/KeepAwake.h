#pragma once

#include "Tools/KeepAwakeHolder.h"
#include "Tools/LidInhibitors.h"
#include "Values/FilePath.h"

#include <chrono>
#include <memory>

namespace Quillmere {

/// The switch that keeps the whole machine from sleeping, its lid closed or not, until it is switched off or the
/// machine restarts. Needs root.
class KeepAwake final
{
public:
    /// @p patience how long logind may take to list what was begun or ended.
    KeepAwake(LidInhibitors inhibitors, std::unique_ptr<const KeepAwakeHolder> holder,
              std::chrono::milliseconds patience = std::chrono::seconds(5));

    /// With a holder of systemd where that runs the machine. @p programs is the folder of the program that holds
    /// elsewhere.
    [[nodiscard]] static KeepAwake ofThisMachine(const QString &programs);

    /// On when there is a holder and logind lists it. Fails where either does not answer.
    [[nodiscard]] Result<bool> isOn() const;
    /// One that is on is kept. Fails, with nothing left behind, where logind does not come to list it.
    [[nodiscard]] Result<void> switchOn() const;
    /// One that is off is no failure. Ends the holder even where logind does not answer.
    [[nodiscard]] Result<void> switchOff() const;

private:
    [[nodiscard]] Result<void> waitUntilListed(bool listed) const;

    LidInhibitors m_inhibitors;
    std::unique_ptr<const KeepAwakeHolder> m_holder;
    std::chrono::milliseconds m_patience;
};

} // namespace Quillmere
