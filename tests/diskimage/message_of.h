#pragma once

#include "diskimage/base/error.h"

#include <functional>
#include <string>

namespace velmora::diskimage
{

/// The message with which an action fails.
inline std::string messageOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const DiskImageError& error) {
        return error.what();
    }
    return "nothing was thrown";
}

} // namespace velmora::diskimage
