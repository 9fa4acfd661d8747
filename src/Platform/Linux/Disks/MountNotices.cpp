#include "Platform/Linux/Disks/MountNotices.h"

#include <QPointer>

#include <array>
#include <cerrno>
#include <tuple>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Quillmere {

MountNotices::MountNotices(std::function<void(const FilePath &)> mounted, BlockDevices devices)
    : m_mounted(std::move(mounted))
    , m_memory(std::move(devices))
    , m_file(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
{
    if (!m_file.isOpen())
        return;
    // proc(5): poll(2) says of this file that something exceptional has happened when the table has changed.
    m_changes = std::make_unique<QSocketNotifier>(m_file.number(), QSocketNotifier::Exception);
    connect(m_changes.get(), &QSocketNotifier::activated, this, &MountNotices::look);
    std::ignore = m_memory.takeNews(parseMountTable(table()));
}

void MountNotices::look()
{
    const QPointer self(this);
    for (const FilePath &place : m_memory.takeNews(parseMountTable(table()))) {
        m_mounted(place);
        // Whoever is told may have had enough of it.
        if (!self)
            return;
    }
}

QByteArray MountNotices::table()
{
    QByteArray text;
    std::array<char, 16384> block{};
    ::lseek(m_file.number(), 0, SEEK_SET);
    for (;;) {
        const ssize_t count = ::read(m_file.number(), block.data(), block.size());
        if (count > 0)
            text.append(block.data(), count);
        else if (count == 0 || errno != EINTR)
            return text;
    }
}

} // namespace Quillmere
