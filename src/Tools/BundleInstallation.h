#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Tools/Caller.h"
#include "Tools/ToolEnd.h"

#include <QStringList>

namespace Quillmere {

/// Puts the program's own bundle where everybody finds applications.
class BundleInstallation final
{
public:
    /// @p applications the folder for all applications; it is made where it is missing.
    explicit BundleInstallation(FilePath applications = FilePath("/Applications"));

    /// The one place that a bundle is installed in.
    [[nodiscard]] static QString usualDestination() { return u"/Applications/Quillmere.app"_qs; }

    /// Copies the bundle that stands at @p source, an absolute location, with the rights of @p caller, and puts it in
    /// the place of whatever stood at the destination, in one step. A failure, or a kill at any moment, leaves the old
    /// one or the new one.
    [[nodiscard]] Result<void> install(const FilePath &source, const Caller &caller) const;
    /// The same for the arguments of a verb: the bundle alone.
    [[nodiscard]] ToolEnd run(const QStringList &arguments, const Result<Caller> &caller) const;

private:
    [[nodiscard]] Result<FileDescriptor> openApplications() const;

    FilePath m_applications;
};

} // namespace Quillmere
