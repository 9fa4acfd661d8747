#pragma once

#include <unistd.h>

#include <utility>

namespace Quillmere {

/// Owns an open descriptor and closes it. Moved, never copied.
class FileDescriptor
{
public:
    /// Nothing open.
    FileDescriptor() = default;
    /// Takes what open(2) answered; a negative number is nothing open.
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor()
    {
        if (isOpen())
            ::close(m_number);
    }

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] int number() const { return m_number; }
    /// Leaves the closing to somebody else.
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};

} // namespace Quillmere
