#pragma once

#include "align/align_pyramid.h"
#include "align/match_list.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"

namespace vkr {

// Debug pictures and texts of alignment, relative to the working folder; nothing creates the folders and a file that
// can not be written is left out. The names of the pictures between the stages hold a backslash as it stands: on
// systems where that is no separator they are files of the working folder itself.

void DumpPyramid(const AlignPyramids& pyramids, int i);        // every level of exposure i
void DumpMappedPyramid(const AlignPyramids& pyramids, int j);  // exposure j after it was mapped towards j + 1
void DumpAligned(const StageDumps& dumps, const CYuvImage& frame, const CImage& mask, int k);

// FeatureMatchDump/InitFeature_<tag>_<nWhich>.bmp: the picture (nDim 1) with a cross at every feature.
void DumpFeatures(const char* pPairTag, int nWhich, const CImage& image, const FeaturePoint* pFeatures, int nCount);

// FeatureMatchDump/<pStage>_<tag>_1.bmp and _2.bmp with a cross in the pair's own colour at both of its points, and
// FeatureMatchDump/<pStage>_<tag>.txt with a line a pair: index, first point, second point, in pixels of level 0.
void DumpMatches(const char* pStage, const char* pPairTag, const CImage& first, const CImage& second,
                 const MatchList& matches);

}  // namespace vkr
