#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"

#include <chrono>

namespace Quillmere {

/// A file system whose server never answers, as that of a machine that has gone: whoever asks it waits until this goes.
/// Inside inMountNamespace().
class DeadMount
{
public:
    /// Whatever waits for a server is ended after so long, and the test has failed.
    static constexpr unsigned secondsUntilGivenUp = 120;
    /// How long a test has its machine wait for a server.
    static constexpr std::chrono::milliseconds patience{100};

    /// On @p folder, which exists. A failure of the test when the machine refuses.
    explicit DeadMount(const FilePath &folder);
    ~DeadMount();
    Q_DISABLE_COPY_MOVE(DeadMount)

    /// From now on whoever asks is told at once that nobody is there, and whoever waits is told so too.
    void letGo() { m_server = FileDescriptor(); }

private:
    const FilePath m_folder;
    FileDescriptor m_server; ///< Where the questions arrive, which nobody reads.
};

/// Empty when a DeadMount can be made on this machine, else the reason why not.
[[nodiscard]] QByteArray whyNoDeadMount();

} // namespace Quillmere
