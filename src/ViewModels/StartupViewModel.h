#pragma once

#include "Platform/Workspace.h"
#include "Services/StartupService.h"
#include "ViewModels/LatestTask.h"
#include "ViewModels/StartupListModel.h"

#include <QObject>

#include <QCoro/QCoroTask>

namespace Quillmere {

/// The Startup Items screen: what the system starts by itself, and a switch for each.
class StartupViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::StartupListModel *rows READ rows CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY itemsChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(QString errorMessage READ errorText NOTIFY errorMessageChanged)

public:
    StartupViewModel(StartupService service, std::shared_ptr<const Workspace> workspace, QObject *parent = nullptr);

    [[nodiscard]] StartupListModel *rows() { return &m_rows; }
    [[nodiscard]] const QList<StartupItem> &items() const { return m_rows.items(); }
    [[nodiscard]] bool isEmpty() const { return items().isEmpty(); }
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] const std::optional<QString> &errorMessage() const { return m_errorMessage; }
    /// Empty when there is nothing to tell.
    [[nodiscard]] QString errorText() const { return m_errorMessage.value_or(QString()); }

    // Started and left to themselves by the screen; whoever wants to know when they end awaits them.
    QCoro::Task<> loadItems();
    /// Switches @p item to the opposite of what it says, and reads the whole list again. A failure leaves the list.
    QCoro::Task<> toggleItem(StartupItem item);

    Q_INVOKABLE void startLoading() { loadItems(); }
    /// Of a row that is shown. Any other is passed over.
    Q_INVOKABLE void toggle(int row);
    Q_INVOKABLE void revealInFinder(const Quillmere::StartupItem &item) const;
    Q_INVOKABLE void dismissError() { setErrorMessage({}); }

Q_SIGNALS:
    void itemsChanged();
    void isLoadingChanged();
    void errorMessageChanged();

private:
    /// While they are read again, none is.
    [[nodiscard]] bool showsRow(int row) const { return !m_isLoading && row >= 0 && row < items().size(); }
    void setIsLoading(bool isLoading);
    void setErrorMessage(const std::optional<QString> &message);

    StartupService m_service;
    std::shared_ptr<const Workspace> m_workspace;
    StartupListModel m_rows{nullptr};
    LatestTask m_loading;
    bool m_isLoading = false;
    std::optional<QString> m_errorMessage;
};

} // namespace Quillmere
