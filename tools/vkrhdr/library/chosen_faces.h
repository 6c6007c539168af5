#pragma once

#include "burst/face_choice.h"
#include "burst/photo_burst.h"
#include "library/parameter_choice.h"
#include "library/tool_parameters.h"
#include "pictures/remarks.h"

namespace vkr::tool {

// Sets the faces of burst and the parameters that go with them. A search by the network is asked for only where there
// is a model (see FindFaceModel); where it is missing, a remark tells how to get it, and no face is looked for: without
// it the library would end the process. UsageError for a box without an area, or one that lies outside the picture; a
// remark tells of one that is cut at the picture's border.
void ChooseFaces(const FaceChoice& choice, const ParameterChoice& parameters, Remarks& remarks, PhotoBurst& burst,
                 ToolParameters& params);

}  // namespace vkr::tool
