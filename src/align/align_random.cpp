#include <cstdlib>

#include "align/ransac.h"

namespace vkr {

void SeedAlignRandom()
{
    std::srand(455);
}

int AlignRandom()
{
    return std::rand();
}

}  // namespace vkr
