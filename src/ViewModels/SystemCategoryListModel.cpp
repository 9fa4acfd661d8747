#include "ViewModels/SystemCategoryListModel.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

// A slice as narrow as this could be neither seen nor hit.
constexpr double leastFractionOfBar = 0.01;

} // namespace

QString localizedCategoryName(const QString &name)
{
    static const QHash<QString, QString> keys = {
        {u"Applications"_qs, u"systemData.applications"_qs}, {u"Documents"_qs, u"systemData.documents"_qs},
        {u"Developer"_qs, u"systemData.developer"_qs},       {u"Caches"_qs, u"systemData.caches"_qs},
        {u"macOS System"_qs, u"systemData.macOS"_qs},        {u"Free Space"_qs, u"systemData.free"_qs},
    };
    const auto key = keys.constFind(name);
    return key == keys.constEnd() ? name : localized(*key);
}

SystemCategoryListModel::SystemCategoryListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        if (!m_items.isEmpty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    });
}

void SystemCategoryListModel::setItems(const QList<SystemCategoryItem> &items, qint64 totalDiskSize)
{
    beginResetModel();
    m_items = items;
    m_totalDiskSize = totalDiskSize;
    endResetModel();
}

int SystemCategoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

double SystemCategoryListModel::fractionOf(const SystemCategoryItem &item) const
{
    return m_totalDiskSize < 1 ? 0 : static_cast<double>(item.size) / static_cast<double>(m_totalDiskSize);
}

QVariant SystemCategoryListModel::data(const QModelIndex &index, int role) const
{
    const SystemCategoryItem &item = m_items.at(index.row());
    switch (role) {
    case LabelRole:
        return localizedCategoryName(item.name);
    case ColorRole:
        return static_cast<int>(item.color);
    case IconRole:
        return item.icon;
    case SizeTextRole:
        return formatByteCount(item.size);
    case PercentageTextRole:
        return m_totalDiskSize < 1 ? u"0%"_qs : QString::asprintf("%.1f%%", fractionOf(item) * 100);
    case FractionRole:
        return fractionOf(item) > leastFractionOfBar ? fractionOf(item) : 0;
    default:
        return {};
    }
}

QHash<int, QByteArray> SystemCategoryListModel::roleNames() const
{
    return {
        {LabelRole, "label"},
        {ColorRole, "sliceColor"},
        {IconRole, "iconName"},
        {SizeTextRole, "sizeText"},
        {PercentageTextRole, "percentageText"},
        {FractionRole, "fraction"},
    };
}

} // namespace Quillmere
