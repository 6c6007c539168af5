#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vkr {

// A network file of a few tensors, written by the tests themselves.
struct TinyModel {
    enum Type : int8_t { kFloat = 0, kInt = 2, kByte = 3 };
    static constexpr int kAdd = 0, kFloorDiv = 90, kUnknown = 127;  // built-in operations

    struct Tensor {
        Type type;
        std::vector<int32_t> vShape;
        std::string sConstant;  // the samples of a constant; empty for tensors that a run fills
    };
    struct Operation {
        int nBuiltin;
        std::vector<int32_t> vInputs, vOutputs;
    };

    std::vector<Tensor> vTensors;
    std::vector<int32_t> vInputs, vOutputs;
    std::vector<Operation> vOperations;

    std::string Bytes() const;
};

using ScoredBox = std::pair<float, std::array<float, 4>>;  // score, normalised corners

// Takes any picture of 320 x 240 and finds always these faces: its outputs are constants.
TinyModel ConstantFaces(const std::vector<ScoredBox>& vFaces);

// model with an operation behind it that loads but can not run: a division by 0.
TinyModel FailingRun(TinyModel model);

}  // namespace vkr
