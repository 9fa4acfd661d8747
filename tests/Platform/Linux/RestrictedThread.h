#pragma once

#include <functional>

/// Runs @p action in a thread whose mounts nobody else sees and which go with it. False when this user may not.
[[nodiscard]] bool withPrivateMounts(const std::function<void()> &action);

/// Runs @p action in a thread to which the modes of files apply even when the tests are run by root.
void withoutOverridingModes(const std::function<void()> &action);

/// Runs @p action in a thread in which close_range(2) has no memory to make a table of descriptors of its own. False
/// where the kernel does not filter calls.
[[nodiscard]] bool withoutOwnDescriptors(const std::function<void()> &action);

/// Runs @p action in a thread in which pidfd_open(2) is not there. False where the kernel does not filter calls.
[[nodiscard]] bool withoutProcessDescriptors(const std::function<void()> &action);
