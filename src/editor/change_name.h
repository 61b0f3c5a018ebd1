#pragma once

#include "model/project.h"

#include <string>

namespace velmora
{

/// What was done between two states of a project, as the Undo command names it ("Move Icon"). Empty when nothing
/// differs or too much to say in a word.
std::string changeName(const DMGProject& before, const DMGProject& after);

} // namespace velmora
