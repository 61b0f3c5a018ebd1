#pragma once

#include "platform/stop_token.h"

namespace velmora
{

/// From now on the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) request a stop of `source` instead of
/// killing the program; one that was ignored when it started (nohup, background jobs) stays ignored. For command-line
/// programs, called once at start-up before other threads exist. Throws std::system_error when the system has no
/// descriptor or thread left.
void stopOnSignals(const StopSource& source);

/// The number of the last such signal, 0 when there was none: such a program exits with 128 + this number.
int lastStopSignal();

} // namespace velmora
