#include "foundation/fork_locks.h"

#include <pthread.h>

#include <cstdlib>

namespace vkr {

namespace {

constexpr int kMost = 8;
std::mutex* g_vLocks[kMost];
int g_nLocks = 0;

void LockAll()
{
    for (int i = 0; i < g_nLocks; ++i) g_vLocks[i]->lock();
}

void UnlockAll()
{
    for (int i = g_nLocks - 1; i >= 0; --i) g_vLocks[i]->unlock();
}

}  // namespace

FreeAfterFork::FreeAfterFork(std::mutex& mutex)
{
    if (g_nLocks == kMost) std::abort();  // our own mistake
    if (g_nLocks == 0) pthread_atfork(LockAll, UnlockAll, UnlockAll);
    g_vLocks[g_nLocks++] = &mutex;
}

}  // namespace vkr
