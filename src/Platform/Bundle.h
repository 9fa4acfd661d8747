#pragma once

#include "Values/FilePath.h"

#include <QString>

#include <optional>

namespace Quillmere {

/// What a folder says of the program that it holds.
struct Bundle
{
    FilePath location;
    std::optional<QString> identifier;
    std::optional<FilePath> executable; ///< Where the program should be. It need not exist.
    std::optional<QString> shortVersion = {}; ///< The version as people read it.
    std::optional<QString> build = {}; ///< What tells builds of one version apart.

    bool operator==(const Bundle &) const = default;
};

/// Opens bundles. Safe to call from any thread.
class Bundles
{
public:
    virtual ~Bundles() = default;

    /// The bundle that the running program was started from. Outside any bundle, the folder of the program.
    [[nodiscard]] virtual FilePath mainLocation() const = 0;
    /// Nothing when @p location is no folder.
    [[nodiscard]] virtual std::optional<Bundle> open(const FilePath &location) const = 0;
};

} // namespace Quillmere
