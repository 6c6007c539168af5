#pragma once

#include <mutex>

namespace vkr {

// A process that fork() makes has one thread: a lock that another thread held at that moment would stay locked in it
// for ever. One that is handed over here is free there, because the fork waits for whoever has it. For locks of static
// storage, at most eight, that are held shortly and under which no other lock is taken. Call it while the library
// loads.
class FreeAfterFork {
public:
    explicit FreeAfterFork(std::mutex& mutex);
};

}  // namespace vkr
