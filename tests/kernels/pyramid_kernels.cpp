#include <algorithm>

#include "kernels/kernel_harness.h"
#include "primitives/gaussian_pyramid.h"
#include "support/reference_pyramid.h"

// Whole pictures, whose plain form is the formula itself, one output sample at a time from the source samples.
namespace vkr {
namespace {

using Pyramid = CGaussianPyramid2;

const KernelSizes kPictures = {{1, 3, 9}, 1, 70, 1, true, 1};

// A picture of up to 20 rows, and what is made of it: its size is halved or doubled.
template <class T>
struct Scaling {
    KernelRun& run;
    int w, h, nDim;
    bool bDither;
    const T* pSrc;

    explicit Scaling(KernelRun& kernelRun)
        : run(kernelRun),
          w(run.Count()),
          h(run.Number(1, 20)),
          nDim(run.Dim()),
          bDither(run.Flag()),
          pSrc(run.In<T>(Samples(w, h)))
    {
    }
    size_t Samples(int nWidth, int nHeight) const { return static_cast<size_t>(nWidth) * nHeight * nDim; }
    Pixels<T> Source() const { return Pixels<T>(pSrc, pSrc + Samples(w, h)); }

    // plain() gives the samples, fast(pDst) writes them.
    template <class Plain, class Fast>
    void Halve(const Plain& plain, const Fast& fast) const
    {
        Write(Samples(w / 2, h / 2), plain, fast);
    }
    template <class Plain, class Fast>
    void Double(const Plain& plain, const Fast& fast) const
    {
        Write(Samples(2 * w, 2 * h), plain, fast);
    }

private:
    template <class Plain, class Fast>
    void Write(size_t nCount, const Plain& plain, const Fast& fast) const
    {
        T* const pDst = run.Out<T>(nCount);
        run.Do(
            [&] {
                const Pixels<T> v = plain();
                std::copy(v.begin(), v.end(), pDst);
            },
            [&] { fast(pDst); });
    }
};

#define HALVE_KERNEL(Name, T, PLAIN, ...)                                                                            \
    KERNEL(Name, (kPictures))                                                                                        \
    {                                                                                                                \
        const Scaling<T> s(run);                                                                                     \
        s.Halve([&] { return PLAIN; }, [&](T* pDst) { Pyramid::Name(s.pSrc, pDst, s.w, s.h, s.nDim __VA_ARGS__); }); \
    }
HALVE_KERNEL(DownScaleImage, uint8_t,
             ReferenceHalve5(s.Source(), s.w, s.h, s.nDim, s.bDither ? Rest::kCarry : Rest::kFloor), , s.bDither)
HALVE_KERNEL(DownScaleShort, int16_t,
             ReferenceHalve5(s.Source(), s.w, s.h, s.nDim, s.bDither ? Rest::kCarry : Rest::kTruncate), , s.bDither)
HALVE_KERNEL(DownScaleImageFast, uint8_t, ReferenceHalve6(s.Source(), s.w, s.h, s.nDim, false, Rest::kFloor))
HALVE_KERNEL(DownScaleShortParallel, int16_t, ReferenceHalve6(s.Source(), s.w, s.h, s.nDim, false, Rest::kFloor))
HALVE_KERNEL(DownScaleShortFast, int16_t,
             ReferenceHalve6(s.Source(), s.w, s.h, s.nDim, true, s.bDither ? Rest::kCarry : Rest::kTruncate), ,
             s.bDither)

// The row-parallel doublings write nothing for a single row.
#define DOUBLE_KERNEL(Name, T, bSingleRow, PLAIN, ...)                                         \
    KERNEL(Name, (kPictures))                                                                  \
    {                                                                                          \
        const Scaling<T> s(run);                                                               \
        s.Double([&] { return s.h > 1 || bSingleRow ? PLAIN : Pixels<T>(); },                  \
                 [&](T* pDst) { Pyramid::Name(s.pSrc, pDst, s.w, s.h, s.nDim __VA_ARGS__); }); \
    }
DOUBLE_KERNEL(UpScaleImage, uint8_t, true, ReferenceDouble161(s.Source(), s.w, s.h, s.nDim, s.bDither), , s.bDither)
DOUBLE_KERNEL(UpScaleShort, int16_t, true, ReferenceDouble161(s.Source(), s.w, s.h, s.nDim, s.bDither), , s.bDither)
DOUBLE_KERNEL(UpScaleImageFast, uint8_t, false, ReferenceDouble31(s.Source(), s.w, s.h, s.nDim))
DOUBLE_KERNEL(UpScaleShortParallel, int16_t, false, ReferenceDouble31Wrap(s.Source(), s.w, s.h, s.nDim))
DOUBLE_KERNEL(UpScaleShortFast, int16_t, true, ReferenceDouble31Serial(s.Source(), s.w, s.h, s.nDim, s.bDither), ,
              s.bDither)

// Differences and sums with a picture that is one pixel wider.
template <class A, class B, class Combine, class Fast>
void CombineRows(KernelRun& run, const Combine& combine, const Fast& fast)
{
    const int w = run.Count(), h = run.Number(1, 20), nDim = run.Dim();
    const size_t nRow = static_cast<size_t>(w) * nDim, nWideRow = nRow + nDim;
    const A* pNarrow = run.In<A>(nRow * h);
    const B* pWide = run.In<B>(nWideRow * h);
    int16_t* pDst = run.Out<int16_t>(nRow * h);
    run.Do(
        [&] {
            for (size_t i = 0; i < nRow * h; ++i) {
                pDst[i] = static_cast<int16_t>(combine(pNarrow[i], pWide[i / nRow * nWideRow + i % nRow]));
            }
        },
        [&] { fast(pNarrow, pWide, pDst, w, h, nDim); });
}

KERNEL(SubtractImage, (kPictures))
{
    CombineRows<uint8_t, uint8_t>(
        run, [](int a, int b) { return a - b; },
        [](const uint8_t* pA, const uint8_t* pB, int16_t* pDst, int w, int h, int nDim) {
            Pyramid::SubtractImage(pA, pB, pDst, w, h, w + 1, nDim);
        });
}

KERNEL(AddShort, (kPictures))  // wraps
{
    CombineRows<int16_t, int16_t>(
        run, [](int a, int b) { return a + b; },
        [](const int16_t* pA, const int16_t* pB, int16_t* pDst, int w, int h, int nDim) {
            Pyramid::AddShort(pB, pA, pDst, w, h, w + 1, nDim);
        });
}

}  // namespace
}  // namespace vkr
