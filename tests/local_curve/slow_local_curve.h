#pragma once

#include <array>
#include <string>
#include <vector>

#include "local_curve/local_auto_curve_filter.h"
#include "local_curve/local_curve_rows.h"

namespace vkr {

// The local curve once more, with a division wherever one is meant, to hold the filter against; rows by the plain form.
// Keeps its curves from picture to picture as the filter does.
class SlowLocalCurve {
public:
    explicit SlowLocalCurve(const CLocalAutoCurveFilter& filter) : f(filter)
    {
        Curve vIdentity;
        for (int i = 0; i < 63; ++i) vIdentity[i] = 4 * (i + 1);
        m_vCurves = Grid(17, std::vector<Curve>(17, vIdentity));
    }

    std::vector<uint8_t> Map(const CImage& image)
    {
        m_vIn.assign(image.pData, image.pData + image.Samples());
        w = image.nWidth;
        h = image.nHeight;
        bw = (w + f.nWinXNum - 1) / f.nWinXNum;
        bh = (h + f.nWinYNum - 1) / f.nWinYNum;
        Follow(Smooth(Nodes(BlockCurves())));
        return Apply();
    }

    std::string sMessages;  // of the blocks without pixels

private:
    using Curve = std::array<int64_t, 63>;
    using Hist = std::array<int64_t, 64>;
    using Grid = std::vector<std::vector<Curve>>;

    static int64_t Sum(const Hist& v)
    {
        int64_t n = 0;
        for (const int64_t x : v) n += x;
        return n;
    }

    Grid BlockCurves()
    {
        std::vector<std::vector<Hist>> vHist(f.nWinYNum, std::vector<Hist>(f.nWinXNum, Hist{}));
        Hist all{};
        for (int i = 0; i < w * h; ++i) {
            const uint8_t* p = &m_vIn[3 * i];
            const int nBin = (2 * p[0] + 9 * p[1] + 5 * p[2]) / 64;
            ++vHist[i / w / bh][i % w / bw][nBin];
            ++all[nBin];
        }
        Grid vGrid(f.nWinYNum, std::vector<Curve>(f.nWinXNum));
        for (int y = 0; y < f.nWinYNum; ++y) {
            for (int x = 0; x < f.nWinXNum; ++x) {
                Hist& hist = vHist[y][x];
                int64_t n = Sum(hist);
                if (n == 0) {
                    sMessages += "Error configuration in block (" + std::to_string(y) + "," + std::to_string(x) +
                                 "), using a plain hist as default\n";
                    n = int64_t{w} * h / (f.nWinXNum * f.nWinYNum);
                    hist.fill(n / 64);
                }
                for (int i = 0; i < 64; ++i) {
                    const int64_t nScale = n == 0 ? 0 : Sum(all) * 256 / n;
                    hist[i] = (all[i] * (16 - f.nLocalWeight) + f.nLocalWeight * (hist[i] * nScale / 256)) / 16;
                }
                vGrid[y][x] = CurveOf(hist);
            }
        }
        return vGrid;
    }

    Curve CurveOf(const Hist& hist) const
    {
        Hist p;
        for (int i = 0; i < 64; ++i) p[i] = Sum(hist) == 0 ? 0 : hist[i] * 16384 / Sum(hist);
        for (int nRound = 0; nRound < 64; ++nRound) {
            Hist q = p;
            for (int64_t& n : q) n = std::min<int64_t>(std::max<int64_t>(n, f.nMinBin * 16), f.nMaxBin * 16 + 256);
            const int64_t nTotal = Sum(q);
            for (int64_t& n : q) n = (n * 16384 + nTotal / 2) / nTotal;
            const bool bSame = q == p;
            p = q;
            if (bSame) break;
        }
        Curve curve;
        int64_t nRun = 0;
        for (int i = 1; i < 64; ++i) {
            nRun += p[i - 1];
            const int64_t t = nRun * 256 / Sum(p);
            curve[i - 1] = 4 * i + (f.nContrastLevel * (t - 4 * i) + 16) / 32;
        }
        return curve;
    }

    // The node between places a and b of a line, or the end of it.
    Grid Nodes(const Grid& v) const
    {
        const int r = f.nWinYNum, c = f.nWinXNum;
        Grid across(r, std::vector<Curve>(c + 1)), out(r + 1, std::vector<Curve>(c + 1));
        for (int i = 0; i < 63; ++i) {
            for (int y = 0; y < r; ++y) {
                for (int x = 0; x <= c; ++x) {
                    across[y][x][i] = x == 0 ? v[y][0][i] : x == c ? v[y][c - 1][i] : (v[y][x - 1][i] + v[y][x][i]) / 2;
                }
            }
            for (int y = 0; y <= r; ++y) {
                for (int x = 0; x <= c; ++x) {
                    out[y][x][i] = y == 0   ? across[0][x][i]
                                   : y == r ? across[r - 1][x][i]
                                            : (across[y - 1][x][i] + across[y][x][i]) / 2;
                }
            }
        }
        return out;
    }

    Grid Smooth(Grid v) const
    {
        const int r = static_cast<int>(v.size()), c = static_cast<int>(v[0].size());
        const int vTap[3] = {1, 2, 1};
        for (int nRound = 0; nRound < f.nSmoothMaskSize; ++nRound) {
            const Grid in = v;
            for (int n = 0; n < r * c * 63; ++n) {
                const int i = n % 63, x = n / 63 % c, y = n / 63 / c;
                int64_t nSum = 0;
                for (int k = 0; k < 9; ++k) {
                    const int yy = std::min(std::max(y + k / 3 - 1, 0), r - 1);
                    const int xx = std::min(std::max(x + k % 3 - 1, 0), c - 1);
                    nSum += vTap[k / 3] * vTap[k % 3] * in[yy][xx][i];
                }
                v[y][x][i] = nSum / 16;
            }
        }
        return v;
    }

    void Follow(const Grid& v)
    {
        for (size_t y = 0; y < v.size(); ++y) {
            for (size_t x = 0; x < v[y].size(); ++x) {
                for (int i = 0; i < 63; ++i) {
                    int64_t& n = m_vCurves[y][x][i];
                    n += f.nCurveStep * (v[y][x][i] - n) / 16;
                }
            }
        }
    }

    std::vector<uint8_t> Apply() const
    {
        std::vector<BlockTable> vTables;
        for (int i = 0; i < f.nWinXNum * f.nWinYNum; ++i) {
            std::array<std::vector<int32_t>, 4> vCurves;
            const int32_t* vNodes[4];
            for (int k = 0; k < 4; ++k) {
                const Curve& curve = m_vCurves[i / f.nWinXNum + k / 2][i % f.nWinXNum + k % 2];
                vCurves[k].assign(curve.begin(), curve.end());
                vNodes[k] = vCurves[k].data();
            }
            vTables.emplace_back();
            MakeBlockTable(vNodes, vTables.back());
        }
        const CurveMapping mapping = {MakeBlockGeometry(w, h, f.nWinXNum, f.nWinYNum), vTables.data(), f.nWinXNum,
                                      f.nWYUV, f.nSaturateBoost};
        std::vector<uint8_t> vOut = m_vIn;
        for (int y = 0; y < h; ++y) MapCurveRowScalar(&vOut[3 * static_cast<size_t>(y) * w], y, mapping);
        return vOut;
    }

    const CLocalAutoCurveFilter& f;
    Grid m_vCurves;
    std::vector<uint8_t> m_vIn;
    int w = 0, h = 0, bw = 0, bh = 0;
};

}  // namespace vkr
