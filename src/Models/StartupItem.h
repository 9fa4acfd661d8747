#pragma once

#include "Models/RiskLevel.h"
#include "Models/SignedStatus.h"
#include "Values/FilePath.h"

#include <QMetaType>
#include <QUuid>

#include <optional>

namespace Quillmere {

/// How something comes to be started. Only LaunchAgent and LaunchDaemon are ever produced.
enum class StartupItemType { LoginItem, LaunchAgent, LaunchDaemon, HelperTool };

template<>
struct RawValues<StartupItemType>
{
    static constexpr std::array<RawValueCase<StartupItemType>, 4> cases = {{
        {StartupItemType::LoginItem, u"loginItem"},
        {StartupItemType::LaunchAgent, u"launchAgent"},
        {StartupItemType::LaunchDaemon, u"launchDaemon"},
        {StartupItemType::HelperTool, u"helperTool"},
    }};
};

/// Key of the type's label.
[[nodiscard]] inline QString labelKey(StartupItemType type)
{
    return u"startup.type."_qs + rawValue(type);
}

/// Something that the system starts by itself.
struct StartupItem
{
    QUuid id = QUuid::createUuid(); ///< Made anew at each load.
    QString name; ///< The label in its file, or else the file's name.
    StartupItemType type = StartupItemType::LaunchAgent;
    FilePath path; ///< The file that says that it is started.
    std::optional<QString> developer; ///< Always none.
    bool isEnabled = true;
    bool runsAtLogin = false;
    SignedStatus signedStatus = SignedStatus::Unknown;
    RiskLevel riskLevel = RiskLevel::Safe; ///< Of switching it off.
    QString explanation; ///< Always empty.
    bool isSystemItem = false;

    bool operator==(const StartupItem &) const = default;
};

} // namespace Quillmere

Q_DECLARE_METATYPE(Quillmere::StartupItem)
