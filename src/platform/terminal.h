#pragma once

namespace velmora::Terminal
{

/// Whether standard output is a terminal that understands cursor movements.
bool isInteractive();
/// Columns of the terminal on standard output; 80 when it does not say.
int columns();

} // namespace velmora::Terminal
