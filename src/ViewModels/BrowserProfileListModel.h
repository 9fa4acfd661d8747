#pragma once

#include "Models/BrowserProfile.h"

#include <QAbstractListModel>

namespace Quillmere {

/// The detected browsers as rows.
class BrowserProfileListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        NameRole = Qt::UserRole + 1,
        IconRole, ///< Empty where there is none.
        CacheSizeTextRole,
        IsRunningRole,
    };

    explicit BrowserProfileListModel(QObject *parent);

    [[nodiscard]] const QList<BrowserProfile> &profiles() const { return m_profiles; }
    void setProfiles(const QList<BrowserProfile> &profiles);
    /// Shows the browser as one that does not run. Nothing happens when there is none of that @p id.
    void setNotRunning(const QUuid &id);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<BrowserProfile> m_profiles;
};

} // namespace Quillmere
