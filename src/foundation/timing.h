#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// Stage times. Tic pushes the present time on one process-wide stack, Toc pops it and prints
// "%-56s %6d ms" with the text and the elapsed time. They nest like brackets. Worker threads call them too: the printed
// numbers of stages that overlap may then pair up oddly, the stack itself is safe from any thread.
void Tic();
void Toc(const char* pText);

// Closes, without a line, what was opened inside its scope and not closed: a burst that ends early leaves no entries.
class TicScope {
public:
    TicScope();
    ~TicScope();
    TicScope(const TicScope&) = delete;
    TicScope& operator=(const TicScope&) = delete;

private:
    size_t m_nDepth;
};

// Milliseconds. The seconds wrap at 32 bits, so only differences mean anything.
int64_t NowMs();

// One at load; while it is 0 Tic and Toc do nothing at all.
extern uint8_t g_bProfileEnable;

}  // namespace vkr
