#pragma once

#include "foundation/image.h"

namespace vkr {

// Thresholds, bit logic, erosion and dilation of masks and grey pictures with nDim 1.
//
// dst takes the size of the source and may be the same record as any source: the bytes are the same in place and out of
// place. Samples outside the picture change nothing, so a border by itself neither shrinks nor grows anything. False
// when there is no memory, dst then empty or undefined, or when a source that is not empty has another nDim, dst then
// untouched; an empty source leaves an empty dst. Any number of threads may run operations on different pictures. Same
// bytes from any number of threads: the fast grey crosses out of place share their rows among the team, everything else
// runs on the calling thread.
struct CMorphologyFilter {
    // 255 or 0 by the sample. Any t, nLow and nHigh; an empty range gives 0 everywhere.
    static bool ThresholdAbove(const CImage& src, CImage& dst, int t);                // v < t: 0, else 255
    static bool ThresholdBelow(const CImage& src, CImage& dst, int t);                // v > t: 0, else 255
    static bool ThresholdRange(const CImage& src, CImage& dst, int nLow, int nHigh);  // inside, ends included: 255

    // Bit by bit. Sources of different sizes: false, dst untouched.
    static bool BitNot(const CImage& src, CImage& dst);
    static bool BitAnd(const CImage& a, const CImage& b, CImage& dst);
    static bool BitOr(const CImage& a, const CImage& b, CImage& dst);
    static bool BitXor(const CImage& a, const CImage& b, CImage& dst);

    // The window is the 3 x 3 square or the cross of five samples. Gray takes the minimum (erosion) or the maximum
    // (dilation), Binary the bitwise AND or OR: the same for 0 and 255, while grey values lose or gain bits.
    static bool ErodeBinarySquare(const CImage& src, CImage& dst);
    static bool DilateBinarySquare(const CImage& src, CImage& dst);
    static bool ErodeGraySquare(const CImage& src, CImage& dst);
    static bool DilateGraySquare(const CImage& src, CImage& dst);
    static bool ErodeBinaryCross(const CImage& src, CImage& dst);
    static bool DilateBinaryCross(const CImage& src, CImage& dst);
    static bool ErodeGrayCross(const CImage& src, CImage& dst);
    static bool DilateGrayCross(const CImage& src, CImage& dst);

    // The same bytes. Every form works on whole rows of the instruction set; only the grey crosses have more to gain.
    static bool ErodeBinarySquareFast(const CImage& src, CImage& dst) { return ErodeBinarySquare(src, dst); }
    static bool ErodeGraySquareFast(const CImage& src, CImage& dst) { return ErodeGraySquare(src, dst); }
    static bool DilateGraySquareFast(const CImage& src, CImage& dst) { return DilateGraySquare(src, dst); }
    static bool ErodeBinaryCrossFast(const CImage& src, CImage& dst) { return ErodeBinaryCross(src, dst); }
    static bool ErodeGrayCrossFast(const CImage& src, CImage& dst);
    static bool DilateGrayCrossFast(const CImage& src, CImage& dst);

    // Squares, then crosses: near a disc of the radius in the name. 2 is one of each, 3 a square and two crosses, 4 two
    // of each. On false dst holds what was done so far.
    static bool ErodeBinaryOctagon2(const CImage& src, CImage& dst);
    static bool ErodeBinaryOctagon3(const CImage& src, CImage& dst);
    static bool ErodeBinaryOctagon4(const CImage& src, CImage& dst);
    static bool ErodeGrayOctagon2(const CImage& src, CImage& dst);  // erodes what dst holds; src is not read
    static bool ErodeGrayOctagon3(const CImage& src, CImage& dst);
    static bool ErodeGrayOctagon4(const CImage& src, CImage& dst);
    static bool DilateBinaryOctagon2(const CImage& src, CImage& dst);
    static bool DilateBinaryOctagon3(const CImage& src, CImage& dst);
    static bool DilateBinaryOctagon4(const CImage& src, CImage& dst);
    static bool DilateGrayOctagon2(const CImage& src, CImage& dst);
    static bool DilateGrayOctagon3(const CImage& src, CImage& dst);
    static bool DilateGrayOctagon4(const CImage& src, CImage& dst);
};

}  // namespace vkr
