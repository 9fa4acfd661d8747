#pragma once

#include <QObject>
#include <QString>

namespace Quillmere {

/// What is said of a chosen volume, ready to be shown.
struct VolumeDetails
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString mountPath MEMBER mountPath CONSTANT)
    Q_PROPERTY(QString device MEMBER device CONSTANT)
    Q_PROPERTY(QString filesystem MEMBER filesystem CONSTANT)
    Q_PROPERTY(QString totalCapacity MEMBER totalCapacity CONSTANT)
    Q_PROPERTY(bool isInternal MEMBER isInternal CONSTANT)

public:
    QString name;
    QString mountPath;
    QString device;
    QString filesystem;
    QString totalCapacity;
    bool isInternal = false;

    bool operator==(const VolumeDetails &) const = default;
};

} // namespace Quillmere
