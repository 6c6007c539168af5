#include "align/aligned_pair.h"

namespace vkr {

namespace {

const PairProbe* g_pPairProbe = nullptr;

}  // namespace

void SetPairProbe(const PairProbe* pProbe)
{
    g_pPairProbe = pProbe;
}

void ProbePair(const AlignedPair& pair)
{
    if (g_pPairProbe != nullptr) g_pPairProbe->pOnPair(g_pPairProbe->pUser, pair);
}

}  // namespace vkr
