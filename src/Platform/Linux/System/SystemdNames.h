#pragma once

#include <QString>

namespace Quillmere {

/// What systemd's manager of units is called on a bus, the system's as the user's.
namespace SystemdNames {

inline const QString service = u"org.freedesktop.systemd1"_qs;
inline const QString object = u"/org/freedesktop/systemd1"_qs;
inline const QString manager = u"org.freedesktop.systemd1.Manager"_qs;

} // namespace SystemdNames

} // namespace Quillmere
