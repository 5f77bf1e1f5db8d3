#pragma once

#include "ImportRun.h"
#include "ReadBack.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

/// A test that imports a file and examines the result.
class ImportedModel : public testing::Test {
protected:
    using Floats = std::vector<float>;
    using Integers = std::vector<std::uint32_t>;
    using Names = std::vector<std::string>;

    void import(const std::string& path) {
        run = runImport({"--check", path, output()});
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        saved = std::make_unique<ReadBack>(output());
    }

    void expectRefused(const std::string& path, const std::string& reason) {
        const auto before = folder.files();
        run = runImport({path, output()});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.messages.starts_with("mox import: " + path + ": " + reason)) << run.messages;
        EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1) << run.messages;
        EXPECT_EQ(folder.files(), before);
    }

    std::string output() const { return folder.path("out.mox"); }

    /// The names of the nodes below a node.
    Names namesBelow(const MoxReader::Node& node) const {
        Names names;
        for (const auto id : saved->model().children(node.id)) {
            names.push_back(saved->model().node(id).name);
        }
        return names;
    }
    const MoxReader::Node& child(const MoxReader::Node& node, std::size_t place) const {
        return saved->model().node(saved->model().children(node.id)[place]);
    }
    const MoxReader::Node& root() const { return saved->model().root(); }

    /// The geometry at a place, counted from 0.
    const MoxReader::Node& geometry(std::size_t place) const { return *saved->geometries().at(place); }
    const MoxReader::Dataset& dataset(std::size_t place, const std::string& name,
                                      const std::string& step = "") const {
        return ReadBack::dataset(geometry(place), name, step);
    }
    bool has(std::size_t place, const std::string& name, const std::string& step = "") const {
        return ReadBack::has(geometry(place), name, step);
    }
    Floats floats(std::size_t place, const std::string& name, const std::string& step = "") const {
        return saved->floats(dataset(place, name, step));
    }
    Integers integers(std::size_t place, const std::string& name) const {
        return saved->integers(dataset(place, name));
    }
    /// The node of the geometry that holds the numbers of a dataset.
    std::uint32_t holder(std::size_t place, const std::string& name) const {
        return saved->model().resolve(dataset(place, name)).nodeId;
    }

    Support::TemporaryFolder folder;
    MoxRun run{};
    std::unique_ptr<ReadBack> saved;
};
