#pragma once

#include <stdexcept>

namespace velmora::cli
{

/// A command line that asks for what cannot go together; the program ends with status 2.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace velmora::cli
