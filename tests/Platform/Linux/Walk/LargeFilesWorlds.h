#pragma once

#include "Platform/FileManager.h"
#include "Platform/Places.h"

#include <memory>

namespace Quillmere {

/// A machine with a home that a test fills: one in memory, or this one with a home of the test's own.
/// Locations are relative to the home. Missing folders above are made.
class LargeFilesWorld
{
public:
    virtual ~LargeFilesWorld() = default;

    virtual void allocate(const QByteArray &path, qint64 bytes) = 0;
    virtual void addSparse(const QByteArray &path, qint64 length) = 0;
    virtual void addLink(const QByteArray &path, const QByteArray &target) = 0;
    virtual void makeUnreadable(const QByteArray &folder) = 0;
    virtual void write(const QByteArray &path, const QByteArray &contents) = 0;

    [[nodiscard]] virtual FilePath home() const = 0;
    [[nodiscard]] virtual std::shared_ptr<const FileManager> files() const = 0;
    [[nodiscard]] virtual std::shared_ptr<const Places> places() const = 0;
};

[[nodiscard]] std::unique_ptr<LargeFilesWorld> makePretendWorld();
[[nodiscard]] std::unique_ptr<LargeFilesWorld> makeRealWorld();

} // namespace Quillmere
