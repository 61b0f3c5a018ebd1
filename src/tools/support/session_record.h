#pragma once

#include "tools/support/session.h"

#include <string>
#include <string_view>

namespace velmora::tools
{

/// A session as the text of its record file, a property list.
std::string writeSessionRecord(const Session& session);

/// Reads such a text; nothing when it is damaged or could not have been written by us.
std::optional<Session> readSessionRecord(std::string_view text);

} // namespace velmora::tools
