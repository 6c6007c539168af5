#pragma once

#include <omp.h>

namespace vkr {

// Sets the team that parallel loops of this thread get, for one scope.
class ThreadsScope {
public:
    explicit ThreadsScope(int nThreads) : m_nBefore(omp_get_max_threads()) { omp_set_num_threads(nThreads); }
    ~ThreadsScope() { omp_set_num_threads(m_nBefore); }
    ThreadsScope(const ThreadsScope&) = delete;
    ThreadsScope& operator=(const ThreadsScope&) = delete;

private:
    int m_nBefore;
};

// Calls fn(nThreads) with teams of 1, 2 and 5 threads: more than this machine may have.
template <class Fn>
void ForThreads(const Fn& fn)
{
    for (const int nThreads : {1, 2, 5}) {
        ThreadsScope scope(nThreads);
        fn(nThreads);
    }
}

}  // namespace vkr
