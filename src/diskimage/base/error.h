#pragma once

#include <stdexcept>

namespace velmora::diskimage
{

/// The one exception of this library: a sentence for a person that says what is wrong, where and why.
class DiskImageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace velmora::diskimage
