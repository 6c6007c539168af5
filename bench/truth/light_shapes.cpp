#include "truth/light_shapes.h"

#include <algorithm>
#include <cmath>

#include "truth/stops.h"

namespace vkr::truth {

namespace {

constexpr double kSmallest = 0.003, kLargest = 0.25;  // radius of a shape, of the scene's width
constexpr double kCover = 3;
constexpr double kPi = 3.14159265358979;

float RandomLight(double fFromStops, double fToStops, TruthRandom& random)
{
    return TwoToThe(static_cast<float>(random.Uniform(fFromStops, fToStops)));
}

// The density falls with the cube of the radius, as if things of one size stood at all distances: every octave of sizes
// covers the same area.
double RandomRadius(TruthRandom& random)
{
    const double fRatio = kSmallest / kLargest;
    return kSmallest / std::sqrt(1 - random.Uniform(0, 1) * (1 - fRatio * fRatio));
}

double MeanSquareRadius()
{
    const double fRatio = kSmallest / kLargest;
    return 2 * kSmallest * kSmallest * std::log(1 / fRatio) / (1 - fRatio * fRatio);
}

LightShape::Edge EdgeOf(double x, double y, double fDistance)
{
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(fDistance)};
}

// Long ones are lines: at least a pixel and a half thick.
void MakeRectangle(LightShape& shape, TruthRandom& random)
{
    double x = 0, y = 0;
    random.InDisc(x, y, 0.1);
    const double fLength = std::sqrt(x * x + y * y);
    x /= fLength;
    y /= fLength;
    const double r = shape.fRadius;
    const double fThin =
        std::max(0.75, r * (random.Below(4) == 0 ? random.Uniform(0.03, 0.1) : random.Uniform(0.3, 1)));
    shape.nEdges = 4;
    shape.vEdges[0] = EdgeOf(x, y, r);
    shape.vEdges[1] = EdgeOf(-x, -y, r);
    shape.vEdges[2] = EdgeOf(-y, x, fThin);
    shape.vEdges[3] = EdgeOf(y, -x, fThin);
    shape.fReach = 1.5f * shape.fRadius + 2;
}

// Normals one after the other by a turn near 360 / n degrees; a turn by a with t = tan(a / 2) needs no sine.
void MakePolygon(LightShape& shape, int nEdges, TruthRandom& random)
{
    static constexpr double kHalfTurns[] = {1.7321, 1, 0.7265, 0.5774};  // tan(180 degrees / n), n = 3 .. 6
    double x = 0, y = 0;
    random.InDisc(x, y, 0.1);
    const double fLength = std::sqrt(x * x + y * y);
    x /= fLength;
    y /= fLength;
    shape.nEdges = nEdges;
    for (int i = 0; i < nEdges; ++i) {
        shape.vEdges[i] = EdgeOf(x, y, shape.fRadius * random.Uniform(0.5, 1));
        const double t = kHalfTurns[nEdges - 3] * random.Uniform(0.9, 1.1);
        const double c = (1 - t * t) / (1 + t * t), s = 2 * t / (1 + t * t);
        const double fTurned = c * x - s * y;
        y = s * x + c * y;
        x = fTurned;
    }
    shape.fReach = 2.6f * shape.fRadius + 2;
}

LightShape RandomShape(int w, int h, double fRadius, TruthRandom& random)
{
    LightShape shape{};
    shape.x = static_cast<float>(random.Uniform(0, w));
    shape.y = static_cast<float>(random.Uniform(0, h));
    shape.fRadius = static_cast<float>(std::max(1.0, fRadius));
    shape.fReach = shape.fRadius + 2;
    const int nKind = random.Below(8);  // one in eight is a disc
    if (nKind >= 5) {
        MakeRectangle(shape, random);
    } else if (nKind >= 1) {
        MakePolygon(shape, 2 + nKind, random);
    }
    return shape;
}

// fLight of the shape; fTint: how far its colours part, in stops.
void SetPaint(LightShape& shape, float fLight, double fTint, double fContrast, TruthRandom& random)
{
    const float fWarm = RandomLight(-fTint, fTint, random);
    shape.vPaint[0] = fLight * fWarm;
    shape.vPaint[1] = fLight * RandomLight(-0.4 * fTint, 0.4 * fTint, random);
    shape.vPaint[2] = fLight / fWarm;
    shape.vPaint[3] = static_cast<float>(fContrast);
}

LightShape RandomLeaf(int w, int h, int nUnit, TruthRandom& random)
{
    LightShape shape = RandomShape(w, h, RandomRadius(random) * nUnit, random);
    const bool bLamp = random.Below(150) == 0;
    const float fLight = bLamp ? RandomLight(1, 3, random) : RandomLight(-4.5, -0.3, random);
    const double fContrast = random.Below(3) == 0 ? random.Uniform(0, 0.15) : random.Uniform(0.3, 1.4);
    SetPaint(shape, fLight, 0.5, fContrast, random);
    return shape;
}

// An opening with daylight behind it, or what lies in the shadow.
LightShape RandomPatch(int w, int h, int nUnit, bool bOpening, TruthRandom& random)
{
    LightShape shape = RandomShape(w, h, random.Uniform(0.04, 0.14) * nUnit, random);
    const float fLight = bOpening ? RandomLight(2, 3.5, random) : RandomLight(-4, -2, random);
    SetPaint(shape, fLight, 0.2, 1, random);
    shape.bMultiply = true;
    return shape;
}

// Pixels whose signed distance to the shape's edge, negative inside, is below fLimit: fFrom < x < fTo on the row dy
// below the centre, x counted from the centre.
void SpanBelow(const LightShape& shape, float dy, float fLimit, float& fFrom, float& fTo)
{
    fFrom = -shape.fReach;
    fTo = shape.fReach;
    if (shape.nEdges == 0) {
        const float fReach = shape.fRadius + fLimit;
        const float fSquare = fReach <= 0 ? 0 : fReach * fReach - dy * dy;
        fTo = fSquare <= 0 ? fFrom : std::sqrt(fSquare);
        fFrom = fSquare <= 0 ? fFrom : -fTo;
        return;
    }
    for (int i = 0; i < shape.nEdges; ++i) {
        const LightShape::Edge& edge = shape.vEdges[i];
        const float fLeft = fLimit + edge.fDistance - edge.y * dy;  // edge.x * x has to stay below it
        if (edge.x > 1e-4f) {
            fTo = std::min(fTo, fLeft / edge.x);
        } else if (edge.x < -1e-4f) {
            fFrom = std::max(fFrom, fLeft / edge.x);
        } else if (fLeft <= 0) {
            fTo = fFrom;
        }
    }
}

float Coverage(const LightShape& shape, float dx, float dy)
{
    float fDistance = -shape.fReach;
    if (shape.nEdges == 0) fDistance = std::sqrt(dx * dx + dy * dy) - shape.fRadius;
    for (int i = 0; i < shape.nEdges; ++i) {
        const LightShape::Edge& edge = shape.vEdges[i];
        fDistance = std::max(fDistance, edge.x * dx + edge.y * dy - edge.fDistance);
    }
    return std::clamp(0.5f - fDistance, 0.0f, 1.0f);
}

void Paint(const LightShape& shape, float fCoverage, float* pPixel)
{
    for (int c = 0; c < LightMap::kChannels; ++c) {
        const float fWhole = shape.bMultiply ? pPixel[c] * shape.vPaint[c] : shape.vPaint[c];
        pPixel[c] += (fWhole - pPixel[c]) * fCoverage;
    }
}

}  // namespace

std::vector<LightShape> ScatterShapes(int w, int h, int nUnit, TruthRandom& random)
{
    const double fArea = static_cast<double>(w) / nUnit * h / nUnit;
    const int nLeaves = static_cast<int>(kCover * fArea / (kPi * MeanSquareRadius()));
    std::vector<LightShape> vShapes;
    for (int i = 0; i < nLeaves; ++i) vShapes.push_back(RandomLeaf(w, h, nUnit, random));
    for (int i = 0; i < 8; ++i) vShapes.push_back(RandomPatch(w, h, nUnit, i % 2 == 0, random));
    return vShapes;
}

void PaintShapeRow(const LightShape& shape, int y, int nWidth, float* pRow)
{
    const float dy = static_cast<float>(y) - shape.y;
    if (std::abs(dy) > shape.fReach) return;
    float fFrom = 0, fTo = 0, fFullFrom = 0, fFullTo = 0;
    SpanBelow(shape, dy, 0.5f, fFrom, fTo);
    if (!(fFrom < fTo)) return;
    SpanBelow(shape, dy, -0.5f, fFullFrom, fFullTo);
    const auto column = [&](float f) { return std::clamp(static_cast<int>(std::ceil(f + shape.x)), 0, nWidth); };
    const int nBegin = column(fFrom), nEnd = column(fTo);
    const int nFullBegin = fFullFrom < fFullTo ? std::clamp(column(fFullFrom), nBegin, nEnd) : nEnd;
    const int nFullEnd = std::clamp(column(fFullTo), nFullBegin, nEnd);
    const auto paintRim = [&](int x) {
        Paint(shape, Coverage(shape, static_cast<float>(x) - shape.x, dy), pRow + LightMap::kChannels * x);
    };
    for (int x = nBegin; x < nFullBegin; ++x) paintRim(x);
    for (int x = nFullBegin; x < nFullEnd; ++x) Paint(shape, 1, pRow + LightMap::kChannels * x);
    for (int x = nFullEnd; x < nEnd; ++x) paintRim(x);
}

}  // namespace vkr::truth
