#pragma once

#include "ViewModels/AppListModel.h"
#include "ViewModels/BrowserProfileListModel.h"
#include "ViewModels/CleanupCategoryListModel.h"
#include "ViewModels/CleanupReport.h"
#include "ViewModels/HistoryListModel.h"
#include "ViewModels/LargeFilesListModel.h"
#include "ViewModels/ResourceProcessListModel.h"
#include "ViewModels/SelectedApplication.h"
#include "ViewModels/SidebarListModel.h"
#include "ViewModels/StartupListModel.h"
#include "ViewModels/SystemCategoryListModel.h"
#include "ViewModels/VolumeDetails.h"

#include <QtQml/qqml.h>

/// The lists and records of the view models as QML sees them: made by a view model, never by a screen.
namespace Quillmere::QmlTypes {

struct AppListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::AppListModel)
    QML_NAMED_ELEMENT(AppListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct BrowserProfileListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::BrowserProfileListModel)
    QML_NAMED_ELEMENT(BrowserProfileListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct CleanupCategoryListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::CleanupCategoryListModel)
    QML_NAMED_ELEMENT(CleanupCategoryListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct CleanupReportType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::CleanupReport)
    QML_VALUE_TYPE(cleanupReport)
};

struct HistoryListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::HistoryListModel)
    QML_NAMED_ELEMENT(HistoryListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct LargeFilesListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::LargeFilesListModel)
    QML_NAMED_ELEMENT(LargeFilesListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct ResourceProcessListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::ResourceProcessListModel)
    QML_NAMED_ELEMENT(ResourceProcessListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct SelectedApplicationType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SelectedApplication)
    QML_VALUE_TYPE(selectedApplication)
};

struct SidebarListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SidebarListModel)
    QML_NAMED_ELEMENT(SidebarListModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct StartupListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::StartupListModel)
    QML_NAMED_ELEMENT(StartupListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct SystemCategoryListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SystemCategoryListModel)
    QML_NAMED_ELEMENT(SystemCategoryListModel)
    QML_UNCREATABLE("A view model makes it.")
};

struct VolumeDetailsType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::VolumeDetails)
    QML_VALUE_TYPE(volumeDetails)
};

} // namespace Quillmere::QmlTypes
