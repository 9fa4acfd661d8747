#include "ViewModels/SidebarListModel.h"

#include "Utilities/LocalizationManager.h"

namespace Quillmere {

SidebarListModel::SidebarListModel(QObject *parent)
    : QAbstractListModel(parent)
    , m_rows({
          header(u"sidebar.overview"_qs),
          destination(SidebarTab::Dashboard),
          {Kind::Promotion, {}, {}},
          header(u"sidebar.cleanup"_qs),
          destination(SidebarTab::SafeCleanup),
          destination(SidebarTab::ProfessionalCleanup),
          header(u"sidebar.analysis"_qs),
          destination(SidebarTab::LargeFiles),
          destination(SidebarTab::Browsers),
          destination(SidebarTab::SystemData),
          header(u"sidebar.system"_qs),
          destination(SidebarTab::Startup),
          destination(SidebarTab::Applications),
          header(u"sidebar.maintenance"_qs),
          destination(SidebarTab::Tools),
          header(u"sidebar.app"_qs),
          destination(SidebarTab::History),
          destination(SidebarTab::Settings),
      })
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this,
            [this] { Q_EMIT dataChanged(index(0), index(rowCount() - 1), {TextRole}); });
}

int SidebarListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant SidebarListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case KindRole:
        return QVariant::fromValue(row.kind);
    case TextRole:
        return row.textKey.isEmpty() ? QString() : localized(row.textKey);
    case IconRole:
        return row.kind == Kind::Destination ? icon(row.tab) : QString();
    case TabRole:
        return QVariant::fromValue(row.tab);
    default:
        return {};
    }
}

QHash<int, QByteArray> SidebarListModel::roleNames() const
{
    return {{KindRole, "kind"}, {TextRole, "text"}, {IconRole, "iconName"}, {TabRole, "tab"}};
}

} // namespace Quillmere
