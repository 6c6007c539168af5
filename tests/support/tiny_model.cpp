#include "support/tiny_model.h"

#include <flatbuffers/flatbuffers.h>

namespace vkr {

namespace {

using flatbuffers::FlatBufferBuilder;
using flatbuffers::Offset;
using Table = flatbuffers::Table;

// Fills one table: field nField in the order of the format's definition.
class TableWriter {
public:
    explicit TableWriter(FlatBufferBuilder& builder) : m_builder(builder), m_nStart(builder.StartTable()) {}
    template <class T>
    TableWriter& Add(int nField, T value)
    {
        m_builder.AddElement<T>(Slot(nField), value, T{});
        return *this;
    }
    template <class T>
    TableWriter& Add(int nField, Offset<T> offset)
    {
        m_builder.AddOffset(Slot(nField), offset);
        return *this;
    }
    Offset<Table> End() { return Offset<Table>(m_builder.EndTable(m_nStart)); }

private:
    static flatbuffers::voffset_t Slot(int nField) { return static_cast<flatbuffers::voffset_t>(4 + 2 * nField); }
    FlatBufferBuilder& m_builder;
    flatbuffers::uoffset_t m_nStart;
};

template <class T>
std::string SampleBytes(const std::vector<T>& vSamples)
{
    return std::string(reinterpret_cast<const char*>(vSamples.data()), vSamples.size() * sizeof(T));
}

Offset<Table> WriteBuffer(FlatBufferBuilder& builder, const std::string& sBytes)
{
    if (sBytes.empty()) return TableWriter(builder).End();
    builder.ForceVectorAlignment(sBytes.size(), 1, 16);
    const auto data = builder.CreateVector(reinterpret_cast<const uint8_t*>(sBytes.data()), sBytes.size());
    return TableWriter(builder).Add(0, data).End();
}

Offset<Table> WriteTensor(FlatBufferBuilder& builder, const TinyModel::Tensor& tensor, uint32_t nBuffer)
{
    const auto shape = builder.CreateVector(tensor.vShape);
    return TableWriter(builder).Add(0, shape).Add<int8_t>(1, tensor.type).Add(2, nBuffer).End();
}

Offset<Table> WriteCode(FlatBufferBuilder& builder, const TinyModel::Operation& operation)
{
    const int8_t nCode = static_cast<int8_t>(operation.nBuiltin);
    return TableWriter(builder).Add(0, nCode).Add<int32_t>(3, nCode).End();
}

Offset<Table> WriteOperation(FlatBufferBuilder& builder, const TinyModel::Operation& operation, uint32_t nCode)
{
    const auto inputs = builder.CreateVector(operation.vInputs), outputs = builder.CreateVector(operation.vOutputs);
    return TableWriter(builder).Add(0, nCode).Add(1, inputs).Add(2, outputs).End();
}

}  // namespace

// Buffer 0 is the empty one; every tensor has one of its own, every operation a code of its own.
std::string TinyModel::Bytes() const
{
    FlatBufferBuilder builder;
    std::vector<Offset<Table>> vBuffers{WriteBuffer(builder, {})}, vTensorTables, vCodes, vOperationTables;
    for (const Tensor& tensor : vTensors) {
        vTensorTables.push_back(WriteTensor(builder, tensor, static_cast<uint32_t>(vBuffers.size())));
        vBuffers.push_back(WriteBuffer(builder, tensor.sConstant));
    }
    for (const Operation& operation : vOperations) {
        vOperationTables.push_back(WriteOperation(builder, operation, static_cast<uint32_t>(vCodes.size())));
        vCodes.push_back(WriteCode(builder, operation));
    }
    const auto tensors = builder.CreateVector(vTensorTables), operations = builder.CreateVector(vOperationTables);
    const auto inputs = builder.CreateVector(vInputs), outputs = builder.CreateVector(vOutputs);
    const Offset<Table> graph =
        TableWriter(builder).Add(0, tensors).Add(1, inputs).Add(2, outputs).Add(3, operations).End();
    const auto graphs = builder.CreateVector(std::vector<Offset<Table>>{graph});
    const auto codes = builder.CreateVector(vCodes), buffers = builder.CreateVector(vBuffers);
    constexpr uint32_t kVersion = 3;
    builder.Finish(TableWriter(builder).Add(0, kVersion).Add(1, codes).Add(2, graphs).Add(4, buffers).End(), "TFL3");
    return std::string(reinterpret_cast<const char*>(builder.GetBufferPointer()), builder.GetSize());
}

TinyModel ConstantFaces(const std::vector<ScoredBox>& vFaces)
{
    std::vector<float> vBoxes, vScores;
    for (const auto& [fScore, vCorners] : vFaces) {
        vBoxes.insert(vBoxes.end(), vCorners.begin(), vCorners.end());
        vScores.insert(vScores.end(), {1 - fScore, fScore});
    }
    const int32_t n = static_cast<int32_t>(vFaces.size());
    TinyModel model;
    model.vTensors = {{TinyModel::kFloat, {1, 240, 320, 3}, {}},
                      {TinyModel::kFloat, {1, n, 4}, SampleBytes(vBoxes)},
                      {TinyModel::kFloat, {1, n, 2}, SampleBytes(vScores)}};
    model.vInputs = {0};
    model.vOutputs = {1, 2};
    return model;
}

TinyModel FailingRun(TinyModel model)
{
    const int32_t n = static_cast<int32_t>(model.vTensors.size());
    const std::vector<int32_t> vOne{1}, vZero{0};
    model.vTensors.push_back({TinyModel::kInt, {1}, SampleBytes(vOne)});
    model.vTensors.push_back({TinyModel::kInt, {1}, SampleBytes(vZero)});
    model.vTensors.push_back({TinyModel::kInt, {1}, {}});
    model.vOperations.push_back({TinyModel::kFloorDiv, {n, n + 1}, {n + 2}});
    model.vOutputs.push_back(n + 2);
    return model;
}

}  // namespace vkr
