#pragma once

#include <chrono>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "kernels/fenced_memory.h"

// Every vector or parallel form beside its plain form, FooScalar beside Foo: the harness calls both on the same rows,
// for every instruction set of the machine, every tail length, number of channels and team, and compares what they
// wrote. A kernel is registered with the rows it takes:
//
//   KERNEL(NotRow, {})
//   {
//       const size_t n = run.Count();
//       const uint8_t* pSrc = run.In<uint8_t>(n);
//       uint8_t* pDst = run.Out<uint8_t>(n);
//       BOTH(NotRow, pSrc, pDst, n);
//   }
namespace vkr {

enum class Form { kPlain, kFast };

// One call of a kernel in one form. Both forms of a case see the same numbers, in the order in which they are asked
// for.
class KernelRun {
public:
    KernelRun(Form form, int nCount, int nDim, uint32_t nSeed, FencedRows& rows)
        : m_form(form), m_nCount(nCount), m_nDim(nDim), m_bAtEnd(nSeed % 2 == 0), m_rng(nSeed), m_rows(rows)
    {
    }

    int Count() const { return m_nCount; }  // pixels
    int Dim() const { return m_nDim; }      // channels
    size_t Samples() const { return static_cast<size_t>(m_nCount) * m_nDim; }

    int Number(int lo, int hi) { return lo + static_cast<int>(m_rng() % (static_cast<uint32_t>(hi - lo) + 1)); }
    int OneOf(std::initializer_list<int> v) { return v.begin()[m_rng() % v.size()]; }
    bool Flag() { return Number(0, 1) != 0; }

    // A row of n random samples lo .. hi, before or behind which the machine lets nobody read.
    template <class T>
    const T* In(size_t n, int lo = std::numeric_limits<T>::min(), int hi = std::numeric_limits<T>::max())
    {
        return Filled<T>(n, lo, hi, Use::kRead);
    }
    // The same, compared afterwards: a state that runs on, or a row changed in place.
    template <class T>
    T* InOut(size_t n, int lo = std::numeric_limits<T>::min(), int hi = std::numeric_limits<T>::max())
    {
        return Filled<T>(n, lo, hi, Use::kCompared);
    }
    // A row to be written whole; what is not written shows.
    template <class T>
    T* Out(size_t n)
    {
        return static_cast<T*>(m_rows.Take(n * sizeof(T), m_bAtEnd, Use::kCompared));
    }
    template <class T>
    T* Scratch(size_t n)
    {
        return static_cast<T*>(m_rows.Take(n * sizeof(T), m_bAtEnd, Use::kScratch));
    }

    // Calls one of the two, or times it.
    template <class Plain, class Fast>
    auto Do(const Plain& plain, const Fast& fast)
    {
        if (m_fMilliseconds > 0) m_form == Form::kPlain ? Time(plain) : Time(fast);
        return m_form == Form::kPlain ? plain() : fast();
    }
    void TimeFor(double fMilliseconds) { m_fMilliseconds = fMilliseconds; }
    double Nanoseconds() const { return m_fNanoseconds; }

private:
    template <class T>
    T* Filled(size_t n, int lo, int hi, Use use)
    {
        T* const pRow = static_cast<T*>(m_rows.Take(n * sizeof(T), m_bAtEnd, use));
        // Now and then the ends of the range alone, which meet the bounds of the arithmetic.
        const bool bEnds = m_rng() % 4 == 0;
        const uint64_t nSpan = static_cast<uint64_t>(static_cast<int64_t>(hi) - lo) + 1;
        for (size_t i = 0; i < n; ++i) {
            const uint32_t nDrawn = static_cast<uint32_t>(m_rng());
            const int64_t nOffset = bEnds ? (nDrawn & 1 ? nSpan - 1 : 0) : (nDrawn * nSpan) >> 32;
            pRow[i] = static_cast<T>(lo + nOffset);
        }
        return pRow;
    }
    template <class Fn>
    void Time(const Fn& fn)
    {
        using Clock = std::chrono::steady_clock;
        const Clock::time_point start = Clock::now();
        std::chrono::duration<double, std::nano> spent{};
        int nCalls = 0;
        do {
            fn();
            ++nCalls;
            spent = Clock::now() - start;
        } while (spent.count() < m_fMilliseconds * 1e6);
        m_fNanoseconds = spent.count() / nCalls;
    }

    Form m_form;
    int m_nCount, m_nDim;
    bool m_bAtEnd;
    std::mt19937 m_rng;
    FencedRows& m_rows;
    double m_fMilliseconds = 0, m_fNanoseconds = 0;
};

// What a kernel can take.
struct KernelSizes {
    std::vector<int> vDims = {1};
    int nFewest = 0, nMost = std::numeric_limits<int>::max();  // pixels
    int nMultiple = 1;                                         // pixels come in multiples of this
    bool bTeams = false;                                       // also with teams of 1, 2 and 5 threads
    int nRounds = 2;                                           // of each size, each with other rows and numbers
};

using KernelBody = void (*)(KernelRun& run);
bool RegisterKernel(const char* pName, const KernelSizes& sizes, KernelBody pBody);

#define KERNEL(Name, ...)                                                                                           \
    static void Name##Kernel(::vkr::KernelRun& run);                                                                \
    static const bool b##Name##Kernel = ::vkr::RegisterKernel(#Name, ::vkr::KernelSizes __VA_ARGS__, Name##Kernel); \
    static void Name##Kernel([[maybe_unused]] ::vkr::KernelRun& run)

// Calls Kernel or KernelScalar.
#define BOTH(Kernel, ...) run.Do([&] { return Kernel##Scalar(__VA_ARGS__); }, [&] { return Kernel(__VA_ARGS__); })

}  // namespace vkr
