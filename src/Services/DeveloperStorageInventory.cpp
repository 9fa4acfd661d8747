#include "Services/DeveloperStorageInventory.h"

#include <algorithm>
#include <span>

namespace Quillmere {

namespace {

/// What a path of the table is relative to.
enum class Origin { Root, Library, Home };

struct PathRow
{
    Origin origin;
    const char *path;
};

struct RootRow
{
    QStringView name;
    PathRow place;
};

constexpr RootRow roots[] = {
    {u"Xcode", {Origin::Root, "/Applications/Xcode.app"}},
    {u"Android Studio", {Origin::Root, "/Applications/Android Studio.app"}},
    {u"Visual Studio Code", {Origin::Root, "/Applications/Visual Studio Code.app"}},
    {u"Sony VEGAS Pro", {Origin::Root, "/Applications/VEGAS Pro.app"}},
    {u"Android SDK", {Origin::Library, "Android/sdk"}},
    {u"Java JDKs", {Origin::Root, "/Library/Java/JavaVirtualMachines"}},
    {u"User Java JDKs", {Origin::Library, "Java/JavaVirtualMachines"}},
    {u"SDKMAN Java", {Origin::Home, ".sdkman/candidates/java"}},
    {u"Python environments", {Origin::Home, ".pyenv"}},
    {u"Conda environments", {Origin::Home, "anaconda3"}},
    {u"Miniconda environments", {Origin::Home, "miniconda3"}},
    {u"Go workspace", {Origin::Home, "go"}},
    {u"Rust toolchains", {Origin::Home, ".rustup"}},
    {u"Node.js versions", {Origin::Home, ".nvm"}},
    {u"Flutter SDK", {Origin::Home, "development/flutter"}},
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

constexpr PathRow python[] = {
    {Origin::Root, "/opt/homebrew/bin/python3"},
    {Origin::Root, "/usr/local/bin/python3"},
    {Origin::Root, "/usr/bin/python3"},
};
constexpr PathRow java[] = {
    {Origin::Root, "/opt/homebrew/bin/java"},
    {Origin::Root, "/usr/local/bin/java"},
    {Origin::Root, "/usr/bin/java"},
};
constexpr PathRow go[] = {{Origin::Root, "/opt/homebrew/bin/go"}, {Origin::Root, "/usr/local/bin/go"}};
constexpr PathRow node[] = {{Origin::Root, "/opt/homebrew/bin/node"}, {Origin::Root, "/usr/local/bin/node"}};
constexpr PathRow rust[] = {{Origin::Home, ".cargo/bin/rustc"}};
constexpr PathRow ruby[] = {
    {Origin::Root, "/opt/homebrew/bin/ruby"},
    {Origin::Root, "/usr/local/bin/ruby"},
    {Origin::Root, "/usr/bin/ruby"},
};
constexpr PathRow php[] = {
    {Origin::Root, "/opt/homebrew/bin/php"},
    {Origin::Root, "/usr/local/bin/php"},
    {Origin::Root, "/usr/bin/php"},
};
constexpr PathRow flutter[] = {
    {Origin::Root, "/opt/homebrew/bin/flutter"},
    {Origin::Home, "development/flutter/bin/flutter"},
};

struct RuntimeRow
{
    QStringView name;
    QStringView argument;
    std::span<const PathRow> candidates;
};

constexpr RuntimeRow runtimes[] = {
    {u"Python", u"--version", python}, {u"Java", u"-version", java},        {u"Go", u"version", go},
    {u"Node.js", u"--version", node},  {u"Rust", u"--version", rust},       {u"Ruby", u"--version", ruby},
    {u"PHP", u"--version", php},       {u"Flutter", u"--version", flutter},
};

FilePath location(const PathRow &row, const DeveloperStorageLookup &lookup)
{
    switch (row.origin) {
    case Origin::Root:
        break;
    case Origin::Library:
        return lookup.library().appending(row.path);
    case Origin::Home:
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
        for (const PathRow &candidate : row.candidates)
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
