#pragma once

#include "random/Support/Call.h"
#include "random/Support/Outcome.h"
#include "random/Support/PlainStream.h"
#include "random/Support/PlainTree.h"

#include <map>
#include <optional>
#include <string>

namespace RandomUse {

/// The files of a folder that models have opened, with their content once they are finished.
using PlainFolder = std::map<std::string, std::optional<PlainFile>>;

/// A model as its callers know it: which calls succeed, what they return, and what is in the file at the end.
class PlainModel {
public:
    /// @param path The folder's path, with a slash at the end.
    /// @param files Must live as long as this object.
    PlainModel(std::string path, PlainFolder& files) : path_(std::move(path)), files_(&files) {}

    /// @param blockSize The environment variable at the time of the call.
    Outcome play(const Action& action, const std::optional<std::string>& blockSize);

    /// The file that the model is open to; nothing if it is Empty or has none.
    const std::optional<std::string>& file() const { return file_; }
    /// Null if the model is Empty.
    const PlainTree* tree() const { return tree_ ? &*tree_ : nullptr; }

private:
    Outcome saveTo(const SaveTo& call);
    Outcome close();
    Outcome addPaths(const std::vector<std::pair<std::string, AttributePairs>>& paths,
                     const std::optional<std::string>& separator);
    Outcome addArray(const AddArray& call, const std::optional<std::string>& blockSize);

    std::string path_;
    PlainFolder* files_;
    std::optional<std::string> file_;
    std::optional<PlainTree> tree_; // Nothing if the model is Empty.
    PlainStream heavy_;
    std::string sourceName_;
    std::string sourceVersion_;
};

} // namespace RandomUse
