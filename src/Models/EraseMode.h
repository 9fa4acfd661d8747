#pragma once

#include <QMetaType>

namespace Quillmere {

namespace EraseModes {
Q_NAMESPACE

/// A new file system on one volume, or zeros over the whole disk.
enum class EraseMode { Quick, Secure };
Q_ENUM_NS(EraseMode)
} // namespace EraseModes

using EraseModes::EraseMode;

} // namespace Quillmere
