#pragma once

#include "Models/AppSettings.h"
#include "Models/Language.h"
#include "Models/OperationLog.h"
#include "Models/RiskLevel.h"
#include "Models/SidebarTab.h"
#include "Utilities/LocalizationManager.h"

#include <QQmlEngine>

/// What QML sees of the folders below, which know nothing of QML.
namespace Quillmere::QmlTypes {

namespace RiskLevelType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::RiskLevels)
QML_NAMED_ELEMENT(RiskLevel)
} // namespace RiskLevelType

namespace SidebarTabType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::SidebarTabs)
QML_NAMED_ELEMENT(SidebarTab)
} // namespace SidebarTabType

namespace OperationStatusType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::OperationStatuses)
QML_NAMED_ELEMENT(OperationStatus)
} // namespace OperationStatusType

namespace AppThemeType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::AppThemes)
QML_NAMED_ELEMENT(AppTheme)
} // namespace AppThemeType

namespace LanguageType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::Languages)
QML_NAMED_ELEMENT(Language)
} // namespace LanguageType

struct LocalizerType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::Localizer)
    QML_NAMED_ELEMENT(Localizer)
    QML_SINGLETON

public:
    /// The application's own, which the engine must not delete.
    static Localizer *create(QQmlEngine *, QJSEngine *)
    {
        QJSEngine::setObjectOwnership(&Localizer::shared(), QJSEngine::CppOwnership);
        return &Localizer::shared();
    }
};

} // namespace Quillmere::QmlTypes
