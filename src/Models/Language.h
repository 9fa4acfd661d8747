#pragma once

#include "Models/RawValue.h"

#include <QMetaType>

namespace Quillmere {

namespace Languages {
Q_NAMESPACE

/// The user's choice of language. System follows the desktop's.
enum class Language { System, English, Spanish, Russian };
Q_ENUM_NS(Language)
} // namespace Languages

using Languages::Language;

template<>
struct RawValues<Language>
{
    static constexpr std::array<RawValueCase<Language>, 4> cases = {{
        {Language::System, u"system"},
        {Language::English, u"en"},
        {Language::Spanish, u"es"},
        {Language::Russian, u"ru"},
    }};
};

/// The language's own name for itself, shown as it stands in every language.
[[nodiscard]] inline QString displayName(Language language)
{
    switch (language) {
    case Language::System:
        return u"System"_qs;
    case Language::English:
        return u"English"_qs;
    case Language::Spanish:
        return u"Español"_qs;
    case Language::Russian:
        return u"Русский"_qs;
    }
    Q_UNREACHABLE();
}

} // namespace Quillmere
