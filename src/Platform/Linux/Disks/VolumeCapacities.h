#pragma once

#include "Platform/FileManager.h"

#include <chrono>
#include <functional>
#include <memory>

namespace Quillmere {

/// Asks volumes for their room without ever being held up by one that does not answer: the volume of a server that has
/// gone keeps whoever asks for as long as it likes, so that a thread is left with it. Safe to call from any thread.
class VolumeCapacities
{
public:
    /// Does the asking, which may take for ever.
    using Question = std::function<Result<VolumeCapacity>(const FilePath &)>;

    VolumeCapacities();
    /// Waits at most @p patience for @p question, which is asked of each place once at a time: whoever comes while it
    /// is under way waits for the same answer.
    VolumeCapacities(Question question, std::chrono::milliseconds patience);

    /// Fails with NotAnswering where the volume does not answer, at once where a question has waited for it longer than
    /// that.
    [[nodiscard]] Result<VolumeCapacity> ask(const FilePath &path, CapacityKeys keys) const;
    /// The same with @p patience of its own, counted from when the question under way was asked.
    [[nodiscard]] Result<VolumeCapacity> ask(const FilePath &path, CapacityKeys keys,
                                             std::chrono::milliseconds patience) const;

private:
    struct Asked;
    struct Waiting;

    [[nodiscard]] Result<VolumeCapacity> askPatiently(const FilePath &path, std::chrono::milliseconds patience) const;

    Question m_question;
    std::chrono::milliseconds m_patience;
    std::shared_ptr<Waiting> m_waiting; ///< Outlives this object with the threads that were left.
};

} // namespace Quillmere
