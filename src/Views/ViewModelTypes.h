#pragma once

#include "App/AppState.h"
#include "ViewModels/AdvertisementBannerViewModel.h"
#include "ViewModels/AdvertisementMovie.h"
#include "ViewModels/ApplicationsViewModel.h"
#include "ViewModels/BrowsersViewModel.h"
#include "ViewModels/CleanupViewModel.h"
#include "ViewModels/DashboardViewModel.h"
#include "ViewModels/DiskUtilityState.h"
#include "ViewModels/DriversViewModel.h"
#include "ViewModels/HistoryViewModel.h"
#include "ViewModels/LargeFilesViewModel.h"
#include "ViewModels/ProfessionalCleanupViewModel.h"
#include "ViewModels/ResourceMonitorViewModel.h"
#include "ViewModels/SafeCleanupViewModel.h"
#include "ViewModels/SettingsViewModel.h"
#include "ViewModels/StartupViewModel.h"
#include "ViewModels/SystemDataViewModel.h"
#include "ViewModels/ToolsViewModel.h"
#include "ViewModels/ViewModelFactory.h"
#include "ViewModels/WelcomeViewModel.h"

#include <QtQml/qqml.h>

/// The view models as QML sees them: made by the application, never by a screen.
namespace Quillmere::QmlTypes {

struct AdvertisementBannerViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::AdvertisementBannerViewModel)
    QML_NAMED_ELEMENT(AdvertisementBannerViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct AdvertisementMovieType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::AdvertisementMovie)
    QML_NAMED_ELEMENT(AdvertisementMovie)
    QML_UNCREATABLE("The factory makes it.")
};

struct AppStateType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::AppState)
    QML_NAMED_ELEMENT(AppState)
    QML_UNCREATABLE("The application makes it.")
};

struct ApplicationsViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::ApplicationsViewModel)
    QML_NAMED_ELEMENT(ApplicationsViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct BrowsersViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::BrowsersViewModel)
    QML_NAMED_ELEMENT(BrowsersViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct CleanupViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::CleanupViewModel)
    QML_NAMED_ELEMENT(CleanupViewModel)
    QML_UNCREATABLE("The factory makes the one of a screen.")
};

struct DashboardViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::DashboardViewModel)
    QML_NAMED_ELEMENT(DashboardViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

namespace DiskAlertType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::DiskAlerts)
QML_NAMED_ELEMENT(DiskAlert)
} // namespace DiskAlertType

struct DiskUtilityStateType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::DiskUtilityState)
    QML_NAMED_ELEMENT(DiskUtilityState)
    QML_UNCREATABLE("The factory makes it.")
};

namespace EraseModeType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::EraseModes)
QML_NAMED_ELEMENT(EraseMode)
} // namespace EraseModeType

struct DriversViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::DriversViewModel)
    QML_NAMED_ELEMENT(DriversViewModel)
    QML_UNCREATABLE("A view model makes it.")
};

namespace FilterModeType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::FilterModes)
QML_NAMED_ELEMENT(FilterMode)
} // namespace FilterModeType

struct HistoryViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::HistoryViewModel)
    QML_NAMED_ELEMENT(HistoryViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct LargeFilesViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::LargeFilesViewModel)
    QML_NAMED_ELEMENT(LargeFilesViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

namespace LoadLevelType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::LoadLevels)
QML_NAMED_ELEMENT(LoadLevel)
} // namespace LoadLevelType

struct ProfessionalCleanupViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::ProfessionalCleanupViewModel)
    QML_NAMED_ELEMENT(ProfessionalCleanupViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct ResourceMonitorViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::ResourceMonitorViewModel)
    QML_NAMED_ELEMENT(ResourceMonitorViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct SafeCleanupViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SafeCleanupViewModel)
    QML_NAMED_ELEMENT(SafeCleanupViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct SettingsViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SettingsViewModel)
    QML_NAMED_ELEMENT(SettingsViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

namespace SortFieldType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::SortFields)
QML_NAMED_ELEMENT(SortField)
} // namespace SortFieldType

struct StartupViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::StartupViewModel)
    QML_NAMED_ELEMENT(StartupViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct SystemDataViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SystemDataViewModel)
    QML_NAMED_ELEMENT(SystemDataViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

namespace SystemStatusType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(Quillmere::SystemStatuses)
QML_NAMED_ELEMENT(SystemStatus)
} // namespace SystemStatusType

struct ToolsViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::ToolsViewModel)
    QML_NAMED_ELEMENT(ToolsViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct ViewModelFactoryType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::ViewModelFactory)
    QML_NAMED_ELEMENT(ViewModelFactory)
    QML_UNCREATABLE("The application makes it.")
};

struct WelcomeViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::WelcomeViewModel)
    QML_NAMED_ELEMENT(WelcomeViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

} // namespace Quillmere::QmlTypes
