#pragma once

#include "core/Progress.h"

namespace vantor {

/// The progress of a command's work: shown on standard error where that is a terminal, and stopped by SIGINT, SIGTERM
/// and SIGHUP from the first time on that the work asks. A second signal ends the program at once.
Progress TerminalProgress();

/// The signal that stopped the work; 0 where none did.
int StoppingSignal();

}  // namespace vantor
