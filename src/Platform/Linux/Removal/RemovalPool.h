#pragma once

#include "Platform/Linux/Removal/FolderEmptying.h"
#include "Platform/Linux/Removal/RemovalRecord.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Quillmere {

/// Deletes one folder with all that is in it on several threads. The folders of the upper levels are shared work; each
/// knows how many below it are left, and whoever removes the last of them removes it and climbs. What lies deeper is
/// finished by the thread that comes to it, so that the number of descriptors stays bounded.
class RemovalPool
{
public:
    /// Everything passed must outlive this.
    RemovalPool(int threads, const MayRemove &mayRemove, RemovalRecord &record);

    /// Empties @p folder, open for reading, and removes it under @p name from @p parent. The calling thread works
    /// along; helpers come only for trees with many folders. Once only.
    void remove(int parent, const QByteArray &name, FileDescriptor folder, const FilePath &path);

private:
    struct Node
    {
        std::shared_ptr<Node> parent; ///< None for the topmost.
        QByteArray name;
        int depth = 0;
        FileDescriptor folder;
        std::atomic<qsizetype> foldersLeft = 0;
        std::atomic<bool> failed = false;
        int sweeps = 0;
    };

    void work();
    [[nodiscard]] std::shared_ptr<Node> next();
    void add(const std::vector<std::shared_ptr<Node>> &nodes);
    void startHelpers();
    void finishAll();

    void process(const std::shared_ptr<Node> &node);
    [[nodiscard]] bool open(Node &node);
    void removeDeeper(Node &node, const QList<QByteArray> &folders);
    void climb(std::shared_ptr<Node> node);
    /// False when the node must be swept once more.
    [[nodiscard]] bool removeEmptied(Node &node);
    void fail(Node &node, const QByteArray &name, int error);
    [[nodiscard]] FilePath location(const Node &node) const;

    int m_threads;
    const MayRemove &m_mayRemove;
    RemovalRecord &m_record;
    int m_parent = -1;
    FilePath m_path;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::shared_ptr<Node>> m_waiting; ///< Last in, first out: that keeps few folders open.
    bool m_finished = false;
    std::vector<std::jthread> m_helpers; ///< Last, so that they end before what they use.
};

} // namespace Quillmere
