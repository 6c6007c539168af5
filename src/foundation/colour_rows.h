#pragma once

#include <cstdint>

namespace vkr {

// Row kernels of the colour conversions, in place on nPixels pixels of three interleaved samples; nothing behind them
// is read or written. The plain forms are the definitions; every instruction set gives their bytes.

// B, G, R to luma, blue and red difference; with bRedFirst the red difference comes second and the blue one third.
void BgrToYCbCrRow(uint8_t* pRow, int nPixels, bool bRedFirst);
void BgrToYCbCrRowScalar(uint8_t* pRow, int nPixels, bool bRedFirst);

// What the shifts by 8 have dropped so far, per channel B, G, R.
struct ColourCarry {
    uint8_t vDropped[3];
};

// The way back. carry is left as the next pixel of the raster needs it, so that a picture is a chain of calls.
void YCbCrToBgrRow(uint8_t* pRow, int nPixels, bool bRedFirst, ColourCarry& carry);
void YCbCrToBgrRowScalar(uint8_t* pRow, int nPixels, bool bRedFirst, ColourCarry& carry);

}  // namespace vkr
