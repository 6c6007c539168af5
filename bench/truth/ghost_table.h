#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "foundation/image.h"
#include "truth/ghost_burst.h"

namespace vkr::truth {

// Shares of pixels, 0 .. 1.
struct MapScore {
    double fCovered = 0;  // of the ghosts
    double fMarked = 0;   // of the still picture
};

// A pixel is marked if the map there lies above nThreshold. An empty map marks nothing.
MapScore ScoreMap(const CImage& map, const std::vector<GhostTruth>& vTruth, int nWidth, int nThreshold);

// How much of the disc stands at each of its places in a result: the step of luma across the rim, from just outside to
// just inside, in units of the step that a disc makes which stands there. 1 the whole disc, 0 none. Its rim is what
// makes a ghost a ghost; and unlike its grey value it stays what it is where the exposures around it change.
struct DiscPresence {
    double vOf[GhostScene::kPlaces] = {};

    bool IsOnePlace() const;      // one within a quarter of 1, the others within a quarter of 0
    double LargestTrace() const;  // what is left of the disc at the places but the one it is most present at
};

// The three are results of one scene with one set of parameters: of the moving disc, of no disc, and of discs that
// stand still at all places.
DiscPresence MeasurePresence(const GhostScene& scene, const CYuvImage& result, const CYuvImage& nowhere,
                             const CYuvImage& everywhere);

// What one set of parameters did to many scenes of one size.
class GhostRow {
public:
    void Add(const MapScore& moving, const DiscPresence& presence, double fNoiseMarked);

    static void PrintHead(std::FILE* pFile);
    void Print(std::FILE* pFile, const std::string& sName) const;

    // Of the scene that was added last.
    void PrintLast(std::FILE* pFile, const std::string& sName, const GhostScene& scene, unsigned nSeed) const;

private:
    std::vector<double> m_vCovered, m_vMarked, m_vNoise, m_vTraces;
    size_t m_nOnePlace = 0;
    DiscPresence m_last;
};

}  // namespace vkr::truth
