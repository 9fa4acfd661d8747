#include "Services/DeveloperStorageInventory.h"

#include <algorithm>
#include <span>

namespace Quillmere {

namespace {

/// What a path of the table is relative to.
enum class Anchor { Root, Library, Home };

struct AnchoredPath
{
    Anchor origin;
    const char *path;
};

struct RootRow
{
    QStringView name;
    AnchoredPath place;
};

constexpr RootRow roots[] = {
    {u"Xcode", {Anchor::Root, "/Applications/Xcode.app"}},
    {u"Android Studio", {Anchor::Root, "/Applications/Android Studio.app"}},
    {u"Visual Studio Code", {Anchor::Root, "/Applications/Visual Studio Code.app"}},
    {u"Sony VEGAS Pro", {Anchor::Root, "/Applications/VEGAS Pro.app"}},
    {u"Android SDK", {Anchor::Library, "Android/sdk"}},
    {u"Java JDKs", {Anchor::Root, "/Library/Java/JavaVirtualMachines"}},
    {u"User Java JDKs", {Anchor::Library, "Java/JavaVirtualMachines"}},
    {u"SDKMAN Java", {Anchor::Home, ".sdkman/candidates/java"}},
    {u"Python environments", {Anchor::Home, ".pyenv"}},
    {u"Conda environments", {Anchor::Home, "anaconda3"}},
    {u"Miniconda environments", {Anchor::Home, "miniconda3"}},
    {u"Go workspace", {Anchor::Home, "go"}},
    {u"Rust toolchains", {Anchor::Home, ".rustup"}},
    {u"Node.js versions", {Anchor::Home, ".nvm"}},
    {u"Flutter SDK", {Anchor::Home, "development/flutter"}},
};

constexpr const char *cellars[] = {"/opt/homebrew/Cellar", "/usr/local/Cellar"};

struct Formula
{
    QStringView name;
    const char *folder; ///< Of a versioned one: how the folders of its versions begin.
};

constexpr Formula versionedFormulas[] = {{u"Python", "python"}, {u"Java", "openjdk"}};
constexpr Formula plainFormulas[] = {
    {u"Go", "go"}, {u"Node.js", "node"}, {u"Rust", "rust"}, {u"Ruby", "ruby"}, {u"PHP", "php"}, {u"Flutter", "flutter"},
};

constexpr AnchoredPath pythonCommands[] = {
    {Anchor::Root, "/opt/homebrew/bin/python3"},
    {Anchor::Root, "/usr/local/bin/python3"},
    {Anchor::Root, "/usr/bin/python3"},
};
constexpr AnchoredPath javaCommands[] = {
    {Anchor::Root, "/opt/homebrew/bin/java"},
    {Anchor::Root, "/usr/local/bin/java"},
    {Anchor::Root, "/usr/bin/java"},
};
constexpr AnchoredPath go[] = {{Anchor::Root, "/opt/homebrew/bin/go"}, {Anchor::Root, "/usr/local/bin/go"}};
constexpr AnchoredPath node[] = {{Anchor::Root, "/opt/homebrew/bin/node"}, {Anchor::Root, "/usr/local/bin/node"}};
constexpr AnchoredPath rust[] = {{Anchor::Home, ".cargo/bin/rustc"}};
constexpr AnchoredPath ruby[] = {
    {Anchor::Root, "/opt/homebrew/bin/ruby"},
    {Anchor::Root, "/usr/local/bin/ruby"},
    {Anchor::Root, "/usr/bin/ruby"},
};
constexpr AnchoredPath php[] = {
    {Anchor::Root, "/opt/homebrew/bin/php"},
    {Anchor::Root, "/usr/local/bin/php"},
    {Anchor::Root, "/usr/bin/php"},
};
constexpr AnchoredPath flutter[] = {
    {Anchor::Root, "/opt/homebrew/bin/flutter"},
    {Anchor::Home, "development/flutter/bin/flutter"},
};

struct RuntimeRow
{
    QStringView name;
    QStringView argument;
    std::span<const AnchoredPath> candidates;
};

constexpr RuntimeRow runtimes[] = {
    {u"Python", u"--version", pythonCommands},
    {u"Java", u"-version", javaCommands},
    {u"Go", u"version", go},
    {u"Node.js", u"--version", node},
    {u"Rust", u"--version", rust},
    {u"Ruby", u"--version", ruby},
    {u"PHP", u"--version", php},
    {u"Flutter", u"--version", flutter},
};

FilePath location(const AnchoredPath &row, const DeveloperStorageLookup &lookup)
{
    switch (row.origin) {
    case Anchor::Root:
        break;
    case Anchor::Library:
        return lookup.library().appending(row.path);
    case Anchor::Home:
        return lookup.home().appending(row.path);
    }
    return FilePath(row.path);
}

void takeCellar(const FilePath &cellar, const DeveloperStorageLookup &lookup, QList<InstalledRoot> &found)
{
    const auto nameOf = [](const Formula &formula) { return formula.name.toString() + u" (Homebrew)"_qs; };
    for (const Formula &formula : versionedFormulas) {
        for (const FilePath &version : lookup.matchingChildren(cellar, formula.folder))
            found.append({nameOf(formula), version});
    }
    for (const Formula &formula : plainFormulas)
        found.append({nameOf(formula), cellar.appending(formula.folder)});
}

} // namespace

QList<InstalledRoot> installedRoots(const DeveloperStorageLookup &lookup, const Places &places)
{
    QList<InstalledRoot> found;
    for (const RootRow &row : roots)
        found.append({row.name.toString(), location(row.place, lookup)});
    for (const char *variable : {"ANDROID_HOME", "ANDROID_SDK_ROOT"}) {
        if (const std::optional<FilePath> root = lookup.environmentLocation(variable))
            found.append({u"Android SDK"_qs, *root});
    }
    for (const char *cellar : cellars)
        takeCellar(FilePath(cellar), lookup, found);
    for (const PlaceEntry &entry : places.entriesBehind(u"Installed Developer Tools and SDKs"_qs))
        found.append({entry.name, entry.path});
    return found;
}

QList<Runtime> detectedRuntimes(const DeveloperStorageLookup &lookup, const Places &places)
{
    QList<Runtime> found;
    for (const RuntimeRow &row : runtimes) {
        QList<FilePath> candidates;
        for (const AnchoredPath &candidate : row.candidates)
            candidates.append(location(candidate, lookup));
        for (const PlaceEntry &entry : places.entriesBehind(row.name.toString() + u" Runtime"_qs))
            candidates.append(entry.path);
        const auto first = std::ranges::find_if(candidates, [&](const FilePath &candidate) {
            return lookup.files().isAnswering(candidate) && lookup.files().isExecutableFile(candidate);
        });
        if (first != candidates.end())
            found.append({row.name.toString(), *first, {row.argument.toString()}});
    }
    return found;
}

} // namespace Quillmere
