#pragma once

#include "Models/FileItem.h"

#include <QLocale>

#include <vector>

namespace Quillmere {

/// For each of @p files the rank of its name among all of theirs, as people of @p locale expect names to be sorted.
/// Files of the same name have the same. Comparing ranks then costs nothing, however often the files are sorted.
[[nodiscard]] std::vector<qsizetype> nameRanks(const QList<FileItem> &files, const QLocale &locale);

} // namespace Quillmere
