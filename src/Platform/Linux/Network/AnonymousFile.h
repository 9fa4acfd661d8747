#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/UrlSession.h"

#include <QByteArrayView>

namespace Quillmere {

/// A file in memory that has no name in any folder: nobody else finds it, and not even a kill leaves it behind.
class AnonymousFile final : public DownloadedFile
{
public:
    AnonymousFile();

    /// False when there is no room, or when there is no such file at all.
    [[nodiscard]] bool append(QByteArrayView bytes);
    [[nodiscard]] QUrl location() const override;

private:
    FileDescriptor m_file;
};

} // namespace Quillmere
