#pragma once

#include "../common/MoxRun.h"
#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/FileSource.h>
#include <MoxReader/HeavyData.h>

#include <Qel/Mox2/Model.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A file as the independent reader finds it.
struct ReadFile {
    explicit ReadFile(const std::string& path)
        : file(path), model(MoxReader::readModel(file)), heavy(file, model) {}

    /// Follows the names from the root down; of a shape it gives the geometry.
    const MoxReader::Node& at(const std::vector<std::string>& names) const {
        auto id = model.root().id;
        for (const auto& name : names) {
            id = childOf(id, name);
        }
        return model.node(id).shape() != nullptr ? model.node(model.children(id).front()) : model.node(id);
    }

    const MoxReader::Dataset& dataset(const std::vector<std::string>& names, const std::string& key) const {
        for (const auto& dataset : at(names).geometry()->datasets) {
            if (dataset.key == key) {
                return dataset;
            }
        }
        throw std::runtime_error("there is no dataset " + key);
    }

    std::vector<float> floats(const std::vector<std::string>& names, const std::string& key) {
        return heavy.readFloats(dataset(names, key));
    }

    std::vector<std::string> keys(const std::vector<std::string>& names) const {
        std::vector<std::string> all;
        for (const auto& dataset : at(names).geometry()->datasets) {
            all.push_back(dataset.key);
        }
        return all;
    }

    std::vector<std::string> childNames(const std::vector<std::string>& names) const {
        std::vector<std::string> all;
        for (const auto id : model.children(at(names).id)) {
            all.push_back(model.node(id).name);
        }
        return all;
    }

    std::vector<MoxReader::BlockRecord> heavyBlocks() const {
        std::vector<MoxReader::BlockRecord> blocks;
        for (const auto& block : file.blocks()) {
            if (block.name == "Heavy Data") {
                blocks.push_back(block);
            }
        }
        return blocks;
    }

    MoxReader::File file;
    MoxReader::Model model;
    MoxReader::HeavyData heavy;

private:
    std::uint32_t childOf(std::uint32_t id, const std::string& name) const {
        for (const auto child : model.children(id)) {
            if (model.node(child).name == name) {
                return child;
            }
        }
        throw std::runtime_error("there is no node " + name);
    }
};

/// A folder with files to join.
class PartFiles : public testing::Test {
protected:
    using Arguments = std::vector<std::string>;
    using Filler = std::function<void(Qel::Mox2::Model&)>;

    std::string path(const std::string& name) const { return folder.path(name); }

    /// Saves a model with a root group "model", below which the filler adds what it wants.
    std::string save(const std::string& name, const Filler& fill,
                     const Qel::Mox2::SaverOptions& options = {true, "solver", "7", ""}) const {
        Qel::Mox2::Model model;
        model.saveTo(path(name), options);
        model.addNode(Qel::Mox2::Group, "model");
        fill(model);
        model.close();
        return path(name);
    }

    /// Saves a model with one shape below the root and one array of floats for each name.
    std::string saveShape(const std::string& name, const std::string& shape, const Arguments& arrays,
                          float first) const {
        return save(name, [&](Qel::Mox2::Model& model) {
            const auto id = model.addNode(Qel::Mox2::Shape, shape);
            for (const auto& array : arrays) {
                model.addArrayProperty(array, Qel::Mox2::NodeScalar,
                                       Qel::Mox2::Array1d<float>{first, first + 1}, id, Qel::Mox2::Step{});
                first += 10;
            }
        });
    }

    MoxRun join(Arguments arguments) const {
        arguments.insert(arguments.begin(), "join");
        return runMox(arguments);
    }

    void expectJoined(const Arguments& arguments) const {
        const auto run = join(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.messages;
    }

    /// Expects no finding but notes.
    static void expectWhole(const std::string& file) {
        const auto run = runMox({"check", file});
        EXPECT_EQ(run.exitCode, 0) << run.output << run.messages;
    }

    static void expectSame(const std::string& a, const std::string& b) {
        const auto run = runMox({"diff", "--no-limit", a, b});
        EXPECT_EQ(run.exitCode, 0) << run.output << run.messages;
    }

    /// The bytes of all blocks of numbers as they are stored.
    std::string storedNumbers(const std::string& file) const {
        const auto bytes = folder.read(std::filesystem::path(file).filename().string());
        std::string all;
        for (const auto& block : ReadFile(file).heavyBlocks()) {
            all += bytes.substr(block.position, block.length);
        }
        return all;
    }

    Support::TemporaryFolder folder;
    const std::string out = folder.path("out.mox");
};
