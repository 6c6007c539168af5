#pragma once

#include <stdexcept>
#include <string>

namespace vkr::tool {

// The two ways the program gives up; main prints the one line. A wrong use says what to do instead.
class UsageError : public std::runtime_error {  // exit status 2
public:
    using std::runtime_error::runtime_error;
};

class BurstError : public std::runtime_error {  // exit status 1: the burst or its files are at fault
public:
    using std::runtime_error::runtime_error;
};

}  // namespace vkr::tool
