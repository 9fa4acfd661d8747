#include "ViewModels/ResourceProcessListModel.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

constexpr double highCpuUsage = 5.0;
constexpr quint64 highNetworkUsage = 100'000;

} // namespace

QString displayName(const ResourceProcess &process)
{
    return FilePath::displayText(process.name.toUtf8());
}

QString formattedNetwork(const ResourceProcess &process)
{
    return process.networkUsage == 0 ? u"0 B/s"_qs : formatByteRate(process.networkUsage);
}

ResourceProcessListModel::ResourceProcessListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &ResourceProcessListModel::publishAll);
}

void ResourceProcessListModel::setProcesses(const QList<ResourceProcess> &processes)
{
    resize(processes.size());
    if (m_processes == processes)
        return;
    m_processes = processes;
    publishAll();
}

void ResourceProcessListModel::resize(qsizetype count)
{
    const qsizetype before = m_processes.size();
    if (count > before) {
        beginInsertRows({}, static_cast<int>(before), static_cast<int>(count - 1));
        m_processes.resize(count);
        endInsertRows();
    } else if (count < before) {
        beginRemoveRows({}, static_cast<int>(count), static_cast<int>(before - 1));
        m_processes.resize(count);
        endRemoveRows();
    }
}

void ResourceProcessListModel::publishAll()
{
    if (!m_processes.isEmpty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

int ResourceProcessListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_processes.size());
}

QVariant ResourceProcessListModel::data(const QModelIndex &index, int role) const
{
    const ResourceProcess &process = m_processes.at(index.row());
    switch (role) {
    case PidRole:
        return process.pid;
    case NameRole:
        return displayName(process);
    case IconRole:
        return process.icon.value_or(QString());
    case CpuTextRole:
        return QString::asprintf("%.1f%%", process.cpuUsage);
    case IsCpuHighRole:
        return process.cpuUsage > highCpuUsage;
    case MemoryTextRole:
        return formatMemoryByteCount(static_cast<qint64>(process.memoryUsage));
    case NetworkTextRole:
        return formattedNetwork(process);
    case IsNetworkHighRole:
        return process.networkUsage > highNetworkUsage;
    case IsInternetBlockedRole:
        return process.isInternetBlocked;
    case CanQuitRole:
        return process.canQuit;
    default:
        return {};
    }
}

QHash<int, QByteArray> ResourceProcessListModel::roleNames() const
{
    return {
        {PidRole, "pid"},
        {NameRole, "name"},
        {IconRole, "icon"},
        {CpuTextRole, "cpuText"},
        {IsCpuHighRole, "isCpuHigh"},
        {MemoryTextRole, "memoryText"},
        {NetworkTextRole, "networkText"},
        {IsNetworkHighRole, "isNetworkHigh"},
        {IsInternetBlockedRole, "isInternetBlocked"},
        {CanQuitRole, "canQuit"},
    };
}

} // namespace Quillmere
