#pragma once

#include "App/AppState.h"
#include "ViewModels/CleanupCategoryListModel.h"
#include "ViewModels/CleanupReport.h"
#include "ViewModels/HistoryListModel.h"
#include "ViewModels/HistoryViewModel.h"
#include "ViewModels/SafeCleanupViewModel.h"
#include "ViewModels/SidebarListModel.h"
#include "ViewModels/ViewModelFactory.h"

#include <QtQml/qqml.h>

/// The view models as QML sees them: made by the application, never by a screen.
namespace Quillmere::QmlTypes {

struct AppStateType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::AppState)
    QML_NAMED_ELEMENT(AppState)
    QML_UNCREATABLE("The application makes it.")
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

struct HistoryViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::HistoryViewModel)
    QML_NAMED_ELEMENT(HistoryViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct SafeCleanupViewModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SafeCleanupViewModel)
    QML_NAMED_ELEMENT(SafeCleanupViewModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct SidebarListModelType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::SidebarListModel)
    QML_NAMED_ELEMENT(SidebarListModel)
    QML_UNCREATABLE("The factory makes it.")
};

struct ViewModelFactoryType
{
    Q_GADGET
    QML_FOREIGN(Quillmere::ViewModelFactory)
    QML_NAMED_ELEMENT(ViewModelFactory)
    QML_UNCREATABLE("The application makes it.")
};

} // namespace Quillmere::QmlTypes
