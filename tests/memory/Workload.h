#pragma once

#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>
#include <Qel/Mox2/Model.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Memory {

/// Saves a model through every call of the interface, while FailingAllocator may let memory run out in one of
/// them, and checks that the file holds what the calls put there.
///
/// The call that fails is repeated, and has to succeed then. Anything else ends the run with a
/// std::runtime_error that says what happened.
class Workload {
public:
    /// @param workFolder Where the files go.
    explicit Workload(std::string workFolder);

    /// Makes all calls and checks the file; then saves a smaller model, through the same object, and checks
    /// it too.
    /// @return false if the model can no longer be closed, and so must not be destroyed either.
    bool run();

private:
    struct ArrayTypes {
        Qel::Mox2::DatasetType withDefaultName;
        Qel::Mox2::DatasetType withoutName;
        std::vector<std::uint32_t> bits;
    };
    struct SavedArray {
        unsigned int node;
        std::string key;
        std::vector<std::uint32_t> bits;
    };

    void makeValues();
    void makeAttributes();
    void makeProperties();
    void makeSteps();
    void makeArrays();

    void open(const std::string& path);
    void saveOnceMore(const std::string& path);
    void addNodes();
    void mergePaths();
    void addArrays();
    template <typename ArrayT>
    void addArraysOf(const ArrayT& array, unsigned int kind, const ArrayTypes& types);
    template <typename ArrayT, typename IdsT, typename StepsT>
    void addArray(const ArrayT& array, const IdsT& ids, const StepsT& steps, const ArrayTypes& types,
                  const std::vector<unsigned int>& nodes, unsigned int stepCount);
    void expectArray(const std::string& name, const std::vector<unsigned int>& nodes, unsigned int stepCount,
                     const std::vector<std::uint32_t>& bits);
    bool close();

    bool succeeds(const std::string& call, const std::function<void()>& action);
    void attempt(
        const std::string& call, const std::function<void()>& action,
        const std::function<void()>& beforeRepeating = [] {});

    void check(const std::string& path) const;
    static void checkArray(const MoxReader::Model& saved, MoxReader::HeavyData& heavy,
                           const SavedArray& array);

    std::string folder_;
    bool mayFail_ = true;
    bool closeFailed_ = false;

    std::optional<Qel::Mox2::Model> model_;
    Qel::Mox2::Attributes attributes_;
    Qel::Mox2::NodeProperties groupProperties_;
    Qel::Mox2::NodeProperties shapeProperties_;
    Qel::Mox2::Step step_;
    std::optional<Qel::Mox2::StepList> twoSteps_;
    std::optional<Qel::Mox2::Array1d<float>> scalars_;
    std::optional<Qel::Mox2::Array1d<unsigned int>> numbers_;
    std::optional<Qel::Mox2::Array2d<float>> vectors_;
    std::optional<Qel::Mox2::Array2d<unsigned int>> numberTable_;

    unsigned int group_ = 0;
    unsigned int shape_ = 0;
    std::optional<Qel::Mox2::Array1d<unsigned int>> geometries_;
    std::map<unsigned int, std::string> nodeNames_;
    std::vector<SavedArray> arrays_;
};

} // namespace Memory
