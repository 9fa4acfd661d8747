#pragma once

#include "Platform/Linux/Need.h"
#include "Values/FilePath.h"

#include <functional>

#include <sys/types.h>

namespace Quillmere {

/// Runs @p body in a process of its own, which may change itself as it likes; its failures are this test's.
void inChild(const std::function<void()> &body);

/// The same as a user without special rights. Root becomes nobody, who is given @p foldersToOwn unless it is empty;
/// everybody else stays who they are.
void inUnprivilegedChild(const FilePath &foldersToOwn, const std::function<void()> &body);

/// The same with mounts of its own, which nobody else sees, and the right to make them.
void inMountNamespace(const std::function<void()> &body);
/// Empty when inMountNamespace() works on this machine, else the reason why not.
[[nodiscard]] QByteArray whyNoMountNamespace();

/// Inside inMountNamespace(). False, and a failure of the test, when the machine refuses.
[[nodiscard]] bool mountTmpfs(const FilePath &folder, const char *options);
/// A file system on disk with a device number of its own, empty. @p backing must be an existing folder outside.
[[nodiscard]] bool mountVolume(const FilePath &folder, const FilePath &backing);

/// Starts a process that runs @p body and then ends; its failures count for nothing.
[[nodiscard]] pid_t startChild(const std::function<void()> &body);
/// Ends a process of startChild() at once and takes it away.
void killChild(pid_t child);

} // namespace Quillmere
