#pragma once

namespace vkr {

// One line for the host: on standard output, and in the platform's log where that is open. A longer one
// than 511 characters ends in "..." and keeps its line end.
void Report(const char* pFormat, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vkr
