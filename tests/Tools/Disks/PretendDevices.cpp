#include "Tools/Disks/PretendDevices.h"

namespace Quillmere {

namespace {

class PretendOpenDevice final : public OpenDevice
{
public:
    PretendOpenDevice(const PretendDevices &owner, QByteArray node)
        : m_owner(owner)
        , m_node(std::move(node))
    {
    }

    [[nodiscard]] Result<DeviceFacts> facts() const override { return device().facts; }

    [[nodiscard]] Result<void> writeZeros(qint64 offset, qint64 count) override
    {
        if (m_owner.onWrite)
            m_owner.onWrite();
        PretendDevice &written = device();
        ++written.writes;
        if (written.failsFrom >= 0 && offset + count > written.failsFrom)
            return Failure{Failure::Kind::Other, {}, u"Input/output error"_qs};
        const QByteArray kept = written.contents.mid(written.forgets, 1);
        written.contents.replace(offset, count, QByteArray(count, '\0'));
        if (written.forgets >= offset && written.forgets < offset + count)
            written.contents.replace(written.forgets, 1, kept);
        return {};
    }

    [[nodiscard]] Result<QByteArray> read(qint64 offset, qint64 count) override
    {
        return device().contents.mid(offset, count);
    }
    [[nodiscard]] Result<void> synchronize() override { return {}; }
    void lookForPartitions() override { ++device().partitionSearches; }

private:
    [[nodiscard]] PretendDevice &device() const { return m_owner.devices[m_node]; }

    const PretendDevices &m_owner;
    QByteArray m_node;
};

} // namespace

Result<std::unique_ptr<OpenDevice>> PretendDevices::open(const QByteArray &node, Way way) const
{
    opened.append(node);
    const auto device = devices.constFind(node);
    if (device == devices.constEnd())
        return Failure{Failure::Kind::NotFound, {}, u"No such device"_qs};
    if (way == Way::Alone && device->isClaimed)
        return Failure{Failure::Kind::Busy, {}, u"Device or resource busy"_qs};
    return std::unique_ptr<OpenDevice>(std::make_unique<PretendOpenDevice>(*this, node));
}

} // namespace Quillmere
