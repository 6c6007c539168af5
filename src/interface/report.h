#pragma once

namespace vkr {

// One line for the host: on standard output, and in the platform's log where that is open. Cut at 511 characters.
void Report(const char* pFormat, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vkr
