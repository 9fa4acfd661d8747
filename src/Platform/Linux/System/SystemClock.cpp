#include "Platform/Linux/System/SystemClock.h"

namespace Quillmere {

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTimeUtc();
}

} // namespace Quillmere
