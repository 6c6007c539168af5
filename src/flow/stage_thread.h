#pragma once

#include <omp.h>

#include <thread>
#include <utility>

namespace vkr {

// A stage on a thread of its own, started by the constructor and joined at the latest by the destructor. fn returns
// whether it succeeded; an exception counts as failure. Its row loops get the team that the starting thread's loops
// have. A thread that can not be started raises std::system_error.
class StageThread {
public:
    template <class Fn>
    explicit StageThread(Fn fn)
        : m_thread([this, fn = std::move(fn), nTeam = omp_get_max_threads()] {
              omp_set_num_threads(nTeam);
              try {
                  m_bDone = fn();
              } catch (...) {
                  m_bDone = false;
              }
          })
    {
    }
    ~StageThread() { Join(); }
    StageThread(const StageThread&) = delete;
    StageThread& operator=(const StageThread&) = delete;

    // Waits for the end; what fn returned.
    bool Join()
    {
        if (m_thread.joinable()) m_thread.join();
        return m_bDone;
    }

private:
    bool m_bDone = false;
    std::thread m_thread;  // last: it starts when all else stands
};

}  // namespace vkr
