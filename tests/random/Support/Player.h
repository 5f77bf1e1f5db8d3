#pragma once

#include "random/Support/Call.h"
#include "random/Support/Outcome.h"

#include <Qel/Mox2/Model.h>

#include <memory>
#include <string>
#include <vector>

namespace RandomUse {

/// Makes calls of models of the library.
class Player {
public:
    /// @param path The folder for the files, with a slash at the end.
    Player(std::string path, unsigned modelCount);

    /// @return how the call differs from the expected; empty if it does not.
    std::string play(const Call& call, const Outcome& expected);

private:
    struct User {
        std::unique_ptr<Qel::Mox2::Model> owner;
        Qel::Mox2::Model* used; ///< The owner, or another model that was assigned from it.
    };

    Outcome make(const Call& call);
    Outcome act(User& user, const SaveTo& call);
    Outcome act(User& user, const Close& call);
    Outcome act(User& user, const Destroy& call);
    Outcome act(User& user, const Share& call);
    Outcome act(User& user, const AddNode& call);
    Outcome act(User& user, const SetCurrentNodeId& call);
    Outcome act(User& user, const MoveToParentNode& call);
    Outcome act(User& user, const GetNodeId& call);
    Outcome act(User& user, const GetNodeIdOfNames& call);
    Outcome act(User& user, const SetNodeData& call);
    Outcome act(User& user, const AddPaths& call);
    Outcome act(User& user, const AddPathsWithAttributes& call);
    Outcome act(User& user, const AddArray& call);
    Outcome act(User& user, const SetBlockSize& call);

    std::string path_;
    std::vector<User> users_;
};

} // namespace RandomUse
