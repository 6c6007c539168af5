#pragma once

#include <chrono>

namespace vkr::tool {

// Milliseconds since it was made.
class StopWatch {
public:
    int Ms() const
    {
        const auto elapsed = std::chrono::steady_clock::now() - m_start;
        return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

}  // namespace vkr::tool
