#include "platform/extended_attributes.h"

#include <cerrno>
#include <functional>
#include <string_view>

#include <sys/types.h>
#include <sys/xattr.h>

namespace velmora::ExtendedAttributes
{
namespace
{

#ifdef __APPLE__
constexpr std::string_view prefix = "";
ssize_t list(int fd, char* buffer, std::size_t size)
{
    return ::flistxattr(fd, buffer, size, 0);
}
ssize_t list(const char* path, char* buffer, std::size_t size)
{
    return ::listxattr(path, buffer, size, XATTR_NOFOLLOW);
}
ssize_t get(int fd, const char* name, char* buffer, std::size_t size)
{
    return ::fgetxattr(fd, name, buffer, size, 0, 0);
}
ssize_t get(const char* path, const char* name, char* buffer, std::size_t size)
{
    return ::getxattr(path, name, buffer, size, 0, XATTR_NOFOLLOW);
}
int set(int fd, const char* name, const std::string& value)
{
    return ::fsetxattr(fd, name, value.data(), value.size(), 0, 0);
}
constexpr int noSuchAttribute = ENOATTR;
#else
constexpr std::string_view prefix = "user.";
ssize_t list(int fd, char* buffer, std::size_t size)
{
    return ::flistxattr(fd, buffer, size);
}
ssize_t list(const char* path, char* buffer, std::size_t size)
{
    return ::llistxattr(path, buffer, size);
}
ssize_t get(int fd, const char* name, char* buffer, std::size_t size)
{
    return ::fgetxattr(fd, name, buffer, size);
}
ssize_t get(const char* path, const char* name, char* buffer, std::size_t size)
{
    return ::lgetxattr(path, name, buffer, size);
}
int set(int fd, const char* name, const std::string& value)
{
    return ::fsetxattr(fd, name, value.data(), value.size(), 0);
}
constexpr int noSuchAttribute = ENODATA;
#endif

/// Asks for a size, then for the bytes, and again when they grew in between; false with errno set.
bool readSized(std::string& bytes, const std::function<ssize_t(char*, std::size_t)>& call)
{
    while (true) {
        const ssize_t needed = call(nullptr, 0);
        if (needed < 0)
            return false;
        bytes.resize(static_cast<std::size_t>(needed));
        if (needed == 0)
            return true;
        const ssize_t got = call(bytes.data(), bytes.size());
        if (got >= 0) {
            bytes.resize(static_cast<std::size_t>(got));
            return true;
        }
        if (errno != ERANGE)
            return false;
    }
}

template <typename File>
bool readAll(File file, Map& attributes)
{
    attributes.clear();
    std::string names;
    if (!readSized(names, [&](char* buffer, std::size_t size) { return list(file, buffer, size); }))
        return errno == ENOTSUP || errno == ENOSYS;
    for (std::size_t start = 0; start < names.size(); start += std::char_traits<char>::length(&names[start]) + 1) {
        const char* const name = &names[start];
        if (std::string_view(name).substr(0, prefix.size()) != prefix)
            continue;
        std::string value;
        if (readSized(value, [&](char* buffer, std::size_t size) { return get(file, name, buffer, size); }))
            attributes.emplace(name + prefix.size(), std::move(value));
        else if (errno != noSuchAttribute) // removed a moment ago is as good as never there
            return false;
    }
    return true;
}

} // namespace

bool read(int fd, Map& attributes)
{
    return readAll(fd, attributes);
}

bool read(const char* path, Map& attributes)
{
    return readAll(path, attributes);
}

bool write(int fd, const std::string& name, const std::string& value)
{
    return set(fd, (std::string(prefix) + name).c_str(), value) == 0;
}

} // namespace velmora::ExtendedAttributes
