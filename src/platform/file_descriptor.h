#pragma once

#include <cerrno>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

/// Small helpers around the system's descriptors, for this folder's own files.
namespace velmora
{

/// Owns an open descriptor; -1 is none.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        if (this != &other) {
            close();
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    ~FileDescriptor() { close(); }

    [[nodiscard]] int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }

    /// Gives it up unclosed.
    int release() { return std::exchange(m_fd, -1); }
    /// Closes it now; false, with errno set, when the system reports an error that writing had not shown yet.
    bool close()
    {
        const int fd = std::exchange(m_fd, -1);
        return fd < 0 || ::close(fd) == 0 || errno == EINTR;
    }

private:
    int m_fd = -1;
};

/// Calls a system function again for as long as a signal interrupts it.
template <typename Call>
auto retryInterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// The system's text for an error number.
inline std::string systemErrorText(int error)
{
    return std::generic_category().message(error);
}

} // namespace velmora
