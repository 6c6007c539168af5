#include "library/engine.h"

#include "pictures/tool_error.h"
#include "pictures/whole_file.h"
#include "vkrHdr.h"

namespace vkr::tool {

namespace {

vkrHdrFrame HostFrame(Frame& frame)
{
    vkrHdrFrame host{};
    host.nWidth = frame.nWidth;
    host.nHeight = frame.nHeight;
    host.pPlane[0] = frame.vY.data();
    host.pPlane[1] = frame.vUV.data();
    host.nPitch[0] = host.nPitch[1] = frame.nWidth;
    return host;
}

}  // namespace

Engine::Engine(const ToolParameters& params, LibraryLines& lines) : m_lines(lines)
{
    const TemporaryFile file;  // read by the time vkrHdrInit returns
    params.Save(file.Path());
    vkrHdrInitParam param{};
    param.pParamFilePath = file.Path().c_str();
    const int nResult = vkrHdrInit(param);
    if (nResult != 0) vkrHdrUninit();
    Check(nResult, "vkrHdrInit");
}

Engine::~Engine()
{
    vkrHdrUninit();
}

void Engine::AddFrame(int nIndex, const Frame& frame)
{
    const vkrHdrFrame host = HostFrame(const_cast<Frame&>(frame));  // the library only reads it
    Check(vkrHdrAddFrame(static_cast<uint32_t>(nIndex), &host), "vkrHdrAddFrame");
}

void Engine::Render(int nExposures, int nReference, int nOrientation, const std::vector<FaceBox>& vFaces,
                    int nFaceSource, Frame& result)
{
    std::vector<vkrHdrRect> vRects;
    for (const FaceBox& box : vFaces) vRects.push_back({box.x1, box.y1, box.x2, box.y2});
    vkrHdrRect* const pEnd = vRects.data() + vRects.size();
    const vSystemFaces faces{vRects.data(), pEnd, pEnd};
    vkrHdrFrame host = HostFrame(result);
    Check(vkrHdrRender(nExposures, nReference, nOrientation, nFaceSource, &faces, &host), "vkrHdrRender");
}

void Engine::Check(int nResult, const char* pCall)
{
    if (nResult == 0) return;
    const std::string sWhy = m_lines.TakeLastMessage();
    throw BurstError(std::string("the burst can not be fused: ") +
                     (sWhy.empty() ? pCall + std::string(" failed") : sWhy));
}

}  // namespace vkr::tool
