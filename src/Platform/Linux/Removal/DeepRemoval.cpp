#include "Platform/Linux/Removal/DeepRemoval.h"

#include <cerrno>

namespace Quillmere {

DeepRemoval::DeepRemoval(int parent, FilePath location, const MayRemove &mayRemove, RemovalRecord &record)
    : m_location(std::move(location))
    , m_mayRemove(mayRemove)
    , m_record(record)
    , m_stack(parent)
{
}

bool DeepRemoval::remove(const QByteArray &folder)
{
    descend(folder, 1);
    while (!m_frames.empty()) {
        Frame &frame = m_frames.back();
        if (frame.next < frame.folders.size())
            descend(QByteArray(frame.folders.at(frame.next++)), 1);
        else if (!ascend())
            return false;
    }
    return !m_failed;
}

void DeepRemoval::descend(const QByteArray &name, int sweeps)
{
    FileDescriptor opened = openFolderToEmpty(m_stack.current(), name);
    if (!opened.isOpen()) {
        handleUnopened(name, errno);
        return;
    }
    m_stack.enter(std::move(opened));
    FolderSweep sweep = sweepFolder(m_stack.current(), m_mayRemove);
    m_record.addRemoved(sweep.removed);
    m_frames.push_back({name, std::move(sweep.folders), 0, sweeps, false});
    for (const FolderSweep::Refusal &refusal : sweep.refusals)
        fail(refusal.name, refusal.error);
}

void DeepRemoval::handleUnopened(const QByteArray &name, int error)
{
    // A link or a file has taken the folder's place: that goes, itself.
    if (error == ELOOP || error == ENOTDIR)
        error = removeEntry(m_stack.current(), name.constData(), m_mayRemove);
    if (error != 0 && error != ENOENT)
        fail(name, error);
}

bool DeepRemoval::ascend()
{
    const Frame done = std::move(m_frames.back());
    m_frames.pop_back();
    if (const int error = m_stack.leave()) {
        fail(done.name, error);
        return false;
    }
    if (done.failed) {
        (m_frames.empty() ? m_failed : m_frames.back().failed) = true;
        return true;
    }
    const int error = removeEmptyFolderOrEntry(m_stack.current(), done.name, m_mayRemove);
    if (error == ENOTEMPTY && done.sweeps < mostSweeps)
        descend(done.name, done.sweeps + 1);
    else if (error == 0)
        m_record.addRemoved(1);
    else if (error != ENOENT)
        fail(done.name, error);
    return true;
}

void DeepRemoval::fail(const QByteArray &name, int error)
{
    QByteArray relative;
    for (const Frame &frame : m_frames)
        relative += frame.name + '/';
    m_record.addFailure(error, m_location.appending(relative + name).standardized());
    (m_frames.empty() ? m_failed : m_frames.back().failed) = true;
}

} // namespace Quillmere
