#include "library/stage_listeners.h"

#include <utility>

namespace vkr::tool {

StageListeners::StageListeners(std::vector<StageListener*> vListeners)
    : m_vListeners(std::move(vListeners)), m_probe(MakeProbe(this)), m_pairProbe(MakePairProbe(this))
{
    SetStageProbe(&m_probe);
    SetPairProbe(&m_pairProbe);
}

StageListeners::~StageListeners()
{
    SetPairProbe(nullptr);
    SetStageProbe(nullptr);
}

void StageListeners::Check() const
{
    if (m_pError) std::rethrow_exception(m_pError);
}

template <class Fn>
void StageListeners::Tell(const Fn& fn)
{
    for (StageListener* pListener : m_vListeners) {
        try {
            fn(*pListener);
        } catch (...) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_pError) m_pError = std::current_exception();
        }
    }
}

StageProbe StageListeners::MakeProbe(StageListeners* pThis)
{
    StageProbe probe{};
    probe.pOnImage = [](void* pUser, const char* pName, const CImage& image) {
        static_cast<StageListeners*>(pUser)->Tell([&](StageListener& one) { one.OnImage(pName, image); });
    };
    probe.pOnShortImage = [](void* pUser, const char* pName, const CShortImage& image) {
        static_cast<StageListeners*>(pUser)->Tell([&](StageListener& one) { one.OnShortImage(pName, image); });
    };
    probe.pOnYuvImage = [](void* pUser, const char* pName, const CYuvImage& image) {
        static_cast<StageListeners*>(pUser)->Tell([&](StageListener& one) { one.OnYuvImage(pName, image); });
    };
    probe.pUser = pThis;
    return probe;
}

PairProbe StageListeners::MakePairProbe(StageListeners* pThis)
{
    const auto OnPair = [](void* pUser, const AlignedPair& pair) {
        static_cast<StageListeners*>(pUser)->Tell([&](StageListener& one) { one.OnPair(pair); });
    };
    return {OnPair, pThis};
}

}  // namespace vkr::tool
