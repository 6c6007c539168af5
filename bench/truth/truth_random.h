#pragma once

#include <cmath>
#include <cstdint>

namespace vkr::truth {

// Random numbers that are the same on every machine: a 64-bit counter, mixed. Streams of different seeds are unrelated.
class TruthRandom {
public:
    explicit TruthRandom(uint64_t nSeed) : m_nState(Mix(nSeed + 0x632be59bd9b4e019U)) {}

    uint32_t Bits()
    {
        m_nState += 0x9e3779b97f4a7c15U;
        return static_cast<uint32_t>(Mix(m_nState) >> 32);
    }

    double Uniform(double fFrom, double fTo) { return fFrom + (fTo - fFrom) * (Bits() / 4294967296.0); }

    // 0 .. nCount - 1
    int Below(int nCount) { return static_cast<int>(uint64_t{Bits()} * static_cast<uint64_t>(nCount) >> 32); }

    // A point of the unit disc, not near its centre if a direction is all that is wanted.
    void InDisc(double& x, double& y, double fLeastRadius = 0)
    {
        do {
            x = Uniform(-1, 1);
            y = Uniform(-1, 1);
        } while (x * x + y * y > 1 || x * x + y * y < fLeastRadius * fLeastRadius);
    }

private:
    static uint64_t Mix(uint64_t n)
    {
        n = (n ^ (n >> 30)) * 0xbf58476d1ce4e5b9U;
        n = (n ^ (n >> 27)) * 0x94d049bb133111ebU;
        return n ^ (n >> 31);
    }

    uint64_t m_nState;
};

}  // namespace vkr::truth
