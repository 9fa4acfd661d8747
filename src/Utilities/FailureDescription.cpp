#include "Utilities/FailureDescription.h"

#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

QString reasonKey(Failure::Kind kind)
{
    switch (kind) {
    case Failure::Kind::NotFound:
        return u"failure.notFound"_qs;
    case Failure::Kind::NoPermission:
        return u"failure.noPermission"_qs;
    case Failure::Kind::AlreadyExists:
        return u"failure.alreadyExists"_qs;
    case Failure::Kind::Busy:
        return u"failure.busy"_qs;
    case Failure::Kind::NotAnswering:
        return u"failure.notAnswering"_qs;
    case Failure::Kind::NoSpace:
        return u"failure.noSpace"_qs;
    case Failure::Kind::ReadOnly:
        return u"failure.readOnly"_qs;
    case Failure::Kind::LinkInPath:
        return u"failure.linkInPath"_qs;
    case Failure::Kind::NotSupported:
        return u"failure.notSupported"_qs;
    case Failure::Kind::Protected:
        return u"failure.protected"_qs;
    case Failure::Kind::Cancelled:
        return u"failure.cancelled"_qs;
    case Failure::Kind::Malformed:
        return u"failure.malformed"_qs;
    case Failure::Kind::Other:
        return u"failure.other"_qs;
    }
    Q_UNREACHABLE();
}

} // namespace

QString localizedDescription(const Failure &failure)
{
    const QString detail = failure.detail.trimmed();
    if (failure.kind == Failure::Kind::Other && !detail.isEmpty())
        return detail;
    return localized(reasonKey(failure.kind));
}

} // namespace Quillmere
