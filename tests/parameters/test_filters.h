#pragma once

#include <string>

#include "parameters/filter.h"

namespace vkr {

// A small tree: CRoot owns CMiddle, which owns CInner, and CBare, which has no parameters.
// clang-format off
struct InnerParams {
    PARAM(nAmount, -5, 10, 3, "grey value", "what is added");
    PARAM_LIST(nNodes, 2, 0, 255, "Q7", "dark, bright", 16, 32);
};
struct MiddleParams {
    PARAM(nShift, 0, 8, 4, "bits", "");
};
struct RootParams {
    PARAM(bOn, 0, 1, 1, "flag", "");
    PARAM(nWide, -2147483647 - 1, 2147483647, -2, "", "");
};
// clang-format on

class CInner : public CFilter, public InnerParams {
public:
    void SetFilterName() override { StoreName("CInner"); }
    void RegisterParameters() override
    {
        Group("Nodes and what is added");
        ADD_PARAM(nAmount);
        ADD_PARAM(nNodes);
    }
    void UpdateParameter() override { ++nUpdates; }

    int nUpdates = 0;
};

class CBare : public CFilter {
public:
    void SetFilterName() override { StoreName("CBare"); }
    void UpdateParameter() override { ++nUpdates; }

    int nUpdates = 0;
};

class CMiddle : public CMultiFilterProcessFlow, public MiddleParams {
public:
    void SetFilterName() override { StoreName("CMiddle"); }
    void RegisterFilters() override { AddFilter(m_Filters, inner, nullptr); }
    void RegisterParameters() override { ADD_PARAM(nShift); }

    CInner inner;
};

class CRoot : public CMultiFilterProcessFlow, public RootParams {
public:
    CRoot()
    {
        middle.inner.Initialize();
        middle.Initialize();
        bare.Initialize();
        Initialize();
    }
    void SetFilterName() override { StoreName("CRoot"); }
    void RegisterFilters() override
    {
        AddFilter(m_Filters, middle, nullptr);
        AddFilter(m_Filters, bare, nullptr);
    }
    void RegisterParameters() override
    {
        ADD_PARAM(bOn);
        ADD_PARAM(nWide);
    }

    CMiddle middle;
    CBare bare;
};

// What the tree writes with its defaults.
inline const char* const kDefaultText =
    "\nCRoot\n"
    "bOn=1;\trange=[0,1]\n"
    "nWide=-2;\trange=[-2147483648,2147483647]\n"
    "\nCMiddle\n"
    "nShift=4;\trange=[0,8]\n"
    "\nCInner\n"
    "nAmount=3;\trange=[-5,10]\n"
    "nNodes_0=16;\trange=[0,255]\n"
    "nNodes_1=32;\trange=[0,255]\n"
    "\nCBare\n";

// The same text with one part changed.
inline std::string Changed(const std::string& sFrom, const std::string& sTo)
{
    std::string sText = kDefaultText;
    const size_t nAt = sText.find(sFrom);
    return nAt == std::string::npos ? "no such part" : sText.replace(nAt, sFrom.size(), sTo);
}

// A file that holds a text, read from its start; gone with the scope.
class TextStream {
public:
    explicit TextStream(const std::string& sText) : m_pFile(std::tmpfile())
    {
        std::fwrite(sText.data(), 1, sText.size(), m_pFile);
        std::rewind(m_pFile);
    }
    ~TextStream() { std::fclose(m_pFile); }
    TextStream(const TextStream&) = delete;
    TextStream& operator=(const TextStream&) = delete;

    operator std::FILE*() const { return m_pFile; }
    std::string Rest() const
    {
        std::string sRest;
        for (int c = std::fgetc(m_pFile); c != EOF; c = std::fgetc(m_pFile)) sRest += static_cast<char>(c);
        return sRest;
    }

private:
    std::FILE* m_pFile;
};

}  // namespace vkr
