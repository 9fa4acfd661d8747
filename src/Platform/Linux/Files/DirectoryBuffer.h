#pragma once

#include <dirent.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace Quillmere {

/// A stretch of a folder's entries as getdents64(2) gives them, `.` and `..` among them.
class DirectoryBuffer
{
public:
    /// Steps from entry to entry.
    class Iterator
    {
    public:
        explicit Iterator(const char *place)
            : m_place(place)
        {
        }
        const dirent64 &operator*() const { return *reinterpret_cast<const dirent64 *>(m_place); }
        Iterator &operator++()
        {
            m_place += (**this).d_reclen;
            return *this;
        }
        bool operator==(const Iterator &) const = default;

    private:
        const char *m_place;
    };

    /// Empty, and without memory until the first read.
    DirectoryBuffer() = default;
    DirectoryBuffer(DirectoryBuffer &&other) noexcept
        : m_bytes(std::move(other.m_bytes))
        , m_size(std::exchange(other.m_size, 0))
    {
    }
    DirectoryBuffer &operator=(DirectoryBuffer &&other) noexcept
    {
        std::swap(m_bytes, other.m_bytes);
        std::swap(m_size, other.m_size);
        return *this;
    }

    /// Replaces the contents with the next entries of @p folder. False at its end, with errno 0, and when it cannot be
    /// read, with the reason in errno.
    [[nodiscard]] bool read(int folder);

    [[nodiscard]] bool isEmpty() const { return m_size == 0; }
    [[nodiscard]] Iterator begin() const { return Iterator(m_bytes.get()); }
    [[nodiscard]] Iterator end() const { return Iterator(m_bytes.get() + m_size); }

    /// Whether @p entry is `.` or `..`, which every folder holds.
    [[nodiscard]] static bool isDots(const dirent64 &entry)
    {
        const char *name = entry.d_name;
        return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
    }
    /// Whether nothing follows @p entry, known without asking the kernel again. ext4 marks its last entry so; where a
    /// file system does not, this is merely false.
    [[nodiscard]] static bool isLast(const dirent64 &entry) { return entry.d_off == INT64_MAX; }

private:
    std::unique_ptr<char[]> m_bytes;
    size_t m_size = 0;
};

} // namespace Quillmere
