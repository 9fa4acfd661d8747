#pragma once

#include <QMetaType>
#include <QString>
#include <QUuid>

namespace Quillmere {

namespace SliceColors {
Q_NAMESPACE

/// What tells the slices of a disk apart, beside their order and their symbols.
enum class SliceColor { Blue, Green, Purple, Orange, Gray, Teal };
Q_ENUM_NS(SliceColor)
} // namespace SliceColors

using SliceColors::SliceColor;

/// One slice of a disk.
struct SystemCategoryItem
{
    QUuid id = QUuid::createUuid(); ///< A new one for each scan.
    QString name; ///< Fixed and English; the label is found by it.
    qint64 size = 0; ///< Bytes.
    SliceColor color = SliceColor::Blue;
    QString icon; ///< Name of a symbol.

    bool operator==(const SystemCategoryItem &) const = default;
};

} // namespace Quillmere
