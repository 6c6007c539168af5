#pragma once

#include <cstdint>

namespace vkr {

// Stage times. Tic pushes the present time on one process-wide stack, Toc pops it and prints
// "%-56s %6d ms" with the text and the elapsed time. They nest like brackets. Worker threads call them too: the printed
// numbers of stages that overlap may then pair up oddly, the stack itself is safe from any thread.
void Tic();
void Toc(const char* pText);

// A timed stage: Tic where it stands, Toc at the end of its scope, whichever way out. An exception takes the line away.
class StageTimer {
public:
    explicit StageTimer(const char* pText);
    ~StageTimer();
    StageTimer(const StageTimer&) = delete;
    StageTimer& operator=(const StageTimer&) = delete;

private:
    const char* m_pText;
    int m_nExceptions;  // under way when it began
};

// A timed stage whose line tells that it got there: Reached is its Toc. A scope left before that has no line.
class GoalTimer {
public:
    explicit GoalTimer(const char* pText);
    ~GoalTimer();
    GoalTimer(const GoalTimer&) = delete;
    GoalTimer& operator=(const GoalTimer&) = delete;

    void Reached();  // once

private:
    const char* m_pText;  // null when reached
};

// Runs fn, a timed stage, and returns what it returns. The line comes whatever that is.
template <class Fn>
auto TimedStage(const char* pText, const Fn& fn)
{
    const StageTimer timer(pText);
    return fn();
}

// Milliseconds. The seconds wrap at 32 bits, so only differences mean anything.
int64_t NowMs();

// One at load; while it is 0 Tic and Toc do nothing at all.
extern uint8_t g_bProfileEnable;

}  // namespace vkr
