#pragma once

#include <omp.h>

#include <initializer_list>

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
constexpr std::initializer_list<int> kFewTeams = {1, 2, 5}, kManyTeams = {1, 2, 3, 5, 8, 64};
template <class Fn>
void ForThreads(const Fn& fn, std::initializer_list<int> teams = kFewTeams)
{
    for (const int nThreads : teams) {
        ThreadsScope scope(nThreads);
        fn(nThreads);
    }
}

}  // namespace vkr
