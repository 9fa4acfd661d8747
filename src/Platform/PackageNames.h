#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace Quillmere {

/// Extensions, in lower case, of folders that people know as one document or one program, and that are looked at as a
/// whole. No file system but the platform's own marks them, so the name decides. In their order.
inline constexpr std::array<std::string_view, 33> packageExtensions = {
    "app",           "aplibrary", "appex",        "bundle",     "component", "dsym",         "fcpbundle",
    "imovielibrary", "kext",      "logicx",       "mdimporter", "mpkg",      "musiclibrary", "photolibrary",
    "photoslibrary", "pkg",       "playground",   "plugin",     "prefpane",  "qlgenerator",  "rtfd",
    "saver",         "scptd",     "sparsebundle", "tvlibrary",  "vst",       "vst3",         "wdgt",
    "xcarchive",     "xcodeproj", "xcworkspace",  "xctest",     "xpc",
};

/// Whether a folder of this name is a package. Case does not matter; a name that only begins with a point has no
/// extension.
[[nodiscard]] inline bool isPackageName(const char *name)
{
    const char *point = std::strrchr(name, '.');
    if (!point || point == name)
        return false;
    const std::string_view extension(point + 1);
    const auto isSame = [](char known, char letter) {
        return known == (letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter);
    };
    return std::ranges::any_of(packageExtensions,
                               [&](std::string_view known) { return std::ranges::equal(known, extension, isSame); });
}

} // namespace Quillmere
