#pragma once

#include "Services/FoundApplication.h"

#include <QAbstractListModel>
#include <QSet>

namespace Quillmere {

/// The applications as rows. One that takes another's place keeps its row.
class AppListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { NameRole = Qt::UserRole + 1, IconRole, SizeTextRole, IsRunningRole };

    explicit AppListModel(QObject *parent);

    [[nodiscard]] const QList<FoundApplication> &apps() const { return m_apps; }
    void setApps(const QList<FoundApplication> &apps);
    void remove(const QUuid &id);
    void replace(const FoundApplication &app);
    /// Which of them run now.
    void setRunning(const QSet<QUuid> &running);
    [[nodiscard]] bool isRunning(const QUuid &id) const { return m_running.contains(id); }
    /// -1 when there is none.
    [[nodiscard]] int rowOf(const QUuid &id) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<FoundApplication> m_apps;
    QSet<QUuid> m_running;
};

} // namespace Quillmere
