#include "interface/logo.h"

namespace vkr {

// There is no bitmap to blend.
void BlendLogo(CYuvImage& /*picture*/) {}

}  // namespace vkr
