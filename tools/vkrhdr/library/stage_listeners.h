#pragma once

#include <exception>
#include <mutex>
#include <string>
#include <vector>

#include "align/aligned_pair.h"
#include "foundation/stage_probe.h"

namespace vkr::tool {

// One who looks on between the library's stages. Calls may come from several threads at once.
class StageListener {
public:
    virtual ~StageListener() = default;
    // A render begins, on the caller's thread: nothing that an earlier one showed counts any more.
    virtual void OnRenderBegins() {}
    virtual void OnImage(const std::string& /*sName*/, const CImage& /*image*/) {}
    virtual void OnShortImage(const std::string& /*sName*/, const CShortImage& /*image*/) {}
    virtual void OnYuvImage(const std::string& /*sName*/, const CYuvImage& /*image*/) {}
    virtual void OnPair(const AlignedPair& /*pair*/) {}
};

// The library knows one probe of each kind. These are they, for the life of this object, and hands everything on to all
// listeners, which must live as long.
class StageListeners {
public:
    explicit StageListeners(std::vector<StageListener*> vListeners);
    ~StageListeners();
    StageListeners(const StageListeners&) = delete;
    StageListeners& operator=(const StageListeners&) = delete;

    // Throws what a listener threw first. Nothing can be thrown through the library, so it waits here.
    void Check() const;

private:
    static StageProbe MakeProbe(StageListeners* pThis);
    static PairProbe MakePairProbe(StageListeners* pThis);
    template <class Fn>
    void Tell(const Fn& fn);

    std::vector<StageListener*> m_vListeners;
    StageProbe m_probe;
    PairProbe m_pairProbe;
    std::mutex m_mutex;
    std::exception_ptr m_pError;
};

}  // namespace vkr::tool
