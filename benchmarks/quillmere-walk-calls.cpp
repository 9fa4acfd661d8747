#include "Platform/Linux/Files/DirectoryBuffer.h"
#include "Platform/Linux/Files/EntryStatus.h"
#include "Platform/Linux/Files/FolderOpening.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

using namespace Quillmere;
using Clock = std::chrono::steady_clock;

namespace {

// So few that the threads end together, so many that they seldom meet.
constexpr size_t foldersAtATime = 16;

/// A folder below the root, ready to be opened.
struct Folder
{
    int parent;
    std::string name;
};

std::vector<Folder> foldersIn(const FileDescriptor &parent)
{
    std::vector<Folder> folders;
    DirectoryBuffer entries;
    while (entries.read(parent.number())) {
        for (const dirent64 &entry : entries) {
            if (entry.d_type == DT_DIR && !DirectoryBuffer::isDots(entry))
                folders.push_back({parent.number(), entry.d_name});
        }
    }
    return folders;
}

/// All folders below a root, with the parents of all of them open.
class PreparedTree
{
public:
    explicit PreparedTree(FileDescriptor root) { addThoseBelow(std::move(root)); }

    [[nodiscard]] const std::vector<Folder> &folders() const { return m_folders; }

private:
    void addThoseBelow(FileDescriptor parent)
    {
        const std::vector<Folder> folders = foldersIn(parent);
        if (folders.empty())
            return;
        m_parents.push_back(std::move(parent));
        m_folders.insert(m_folders.end(), folders.begin(), folders.end());
        for (const Folder &folder : folders)
            addThoseBelow(openSubfolder(folder.parent, folder.name.c_str()));
    }

    std::vector<Folder> m_folders;
    std::vector<FileDescriptor> m_parents;
};

/// What a walk asks the system for one folder, and nothing else. Answers how many files it has.
long askFor(const Folder &folder, DirectoryBuffer &entries)
{
    const FileDescriptor opened = openSubfolder(folder.parent, folder.name.c_str());
    long files = 0;
    bool isLast = false;
    while (!isLast && entries.read(opened.number())) {
        for (const dirent64 &entry : entries) {
            isLast = DirectoryBuffer::isLast(entry);
            if (entry.d_type == DT_REG)
                files += EntryStatus(opened.number(), entry.d_name).isFileOfTree() ? 1 : 0;
        }
    }
    return files;
}

long askForAll(const std::vector<Folder> &folders)
{
    std::atomic<size_t> next = 0;
    std::atomic<long> files = 0;
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < std::max(std::thread::hardware_concurrency(), 1U); ++thread) {
        threads.emplace_back([&] {
            DirectoryBuffer entries;
            long own = 0;
            for (size_t first = next.fetch_add(foldersAtATime); first < folders.size();
                 first = next.fetch_add(foldersAtATime)) {
                for (size_t each = first; each < std::min(first + foldersAtATime, folders.size()); ++each)
                    own += askFor(folders[each], entries);
            }
            files += own;
        });
    }
    threads.clear();
    return files;
}

} // namespace

/// Makes the calls that no walk of the folders below PATH can do without, shared evenly between as many threads as
/// there are cores, by someone who knows the tree beforehand, and prints how long they took. The root's own files are
/// left out, so that this says nothing of a tree that is one folder.
int main(int argumentCount, char **arguments)
{
    if (argumentCount != 2) {
        std::fputs("Usage: quillmere-walk-calls PATH\n", stderr);
        return 2;
    }
    FileDescriptor root = openFolderForReading(FilePath(arguments[1]), FinalLink::Refuse);
    if (!root.isOpen()) {
        std::perror(arguments[1]);
        return 1;
    }
    const PreparedTree tree(std::move(root));
    const Clock::time_point start = Clock::now();
    const long files = askForAll(tree.folders());
    const double milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    std::printf("%ld files, %.2f ms\n", files, milliseconds);
    return 0;
}
