#include "random/Support/Player.h"

#include "Support/Thrown.h"
#include "api/Support/MeantLeak.h"
#include "random/Support/values.h"
#include "random/Support/withArray.h"

#include <Qel/Exception/Exception.h>

#include <boost/throw_exception.hpp>
#include <gtest/gtest.h>

#include <map>
#include <new>
#include <sstream>
#include <stdexcept>
#include <typeinfo>
#include <utility>

namespace RandomUse {

namespace {

using Qel::Mox2::Array1d;
using Qel::Mox2::Model;

template <typename Class>
const std::type_info* thrownType() {
    return &typeid(boost::wrapexcept<Class>);
}

const std::type_info& typeNamed(const std::string& exception) {
    using namespace Qel::Exception;
    static const std::map<std::string, const std::type_info*> types = {
        {"MiscelleneousException", thrownType<MiscelleneousException>()},
        {"InvalidArguments", thrownType<InvalidArguments>()},
        {"FileOpenException", thrownType<FileOpenException>()},
        {"FileWriteException", thrownType<FileWriteException>()},
        {"OutOfBounds", thrownType<OutOfBounds>()},
        {"UnderflowError", thrownType<UnderflowError>()},
        {"KeyNotFound", thrownType<KeyNotFound>()},
        {"InvalidObjectState", thrownType<InvalidObjectState>()},
        {"TemplateSpecializationNotDefined", thrownType<TemplateSpecializationNotDefined>()},
        {"NotYetImplemented", thrownType<NotYetImplemented>()},
    };
    return *types.at(exception);
}

std::string idsIn(const std::vector<unsigned int>& ids) {
    std::ostringstream text;
    text << "{";
    for (const unsigned int id : ids) {
        text << ' ' << id;
    }
    text << " }";
    return text.str();
}

std::string difference(const Outcome& expected, const Outcome& seen) {
    if (expected.isFailure()) {
        return "it returned " + idsIn(seen.ids) + " instead of throwing " + expected.exception + " \"" +
               expected.text + "\"";
    }
    if (seen.ids != expected.ids) {
        return "it returned " + idsIn(seen.ids) + " instead of " + idsIn(expected.ids);
    }
    return "";
}

std::string difference(const Outcome& expected, const Qel::Exception::Exception& caught) {
    if (expected.code == 0) {
        return "it threw \"" + std::string(caught.what()) + "\"" +
               (expected.isFailure() ? " instead of " + expected.exception : "");
    }
    const Support::Thrown thrown = {expected.code, expected.text, expected.file, expected.function};
    const testing::AssertionResult result = Support::matches(caught, typeNamed(expected.exception), thrown);
    return result ? "" : "it threw another exception: " + std::string(result.message());
}

template <typename Class>
std::string difference(const Outcome& expected, const std::string& exception, const Class& caught) {
    if (expected.exception == exception && (expected.text.empty() || expected.text == caught.what())) {
        return "";
    }
    return "it threw " + exception + " \"" + caught.what() + "\"" +
           (expected.isFailure() ? " instead of " + expected.exception + " \"" + expected.text + "\"" : "");
}

Outcome returned(unsigned int id) {
    Outcome outcome;
    outcome.ids = {id};
    return outcome;
}

Outcome returned(const Array1d<unsigned int>& ids) {
    Outcome outcome;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        outcome.ids.push_back(ids[i]);
    }
    return outcome;
}

} // namespace

Player::Player(std::string path, unsigned modelCount) : path_(std::move(path)) {
    for (unsigned i = 0; i < modelCount; ++i) {
        auto model = std::make_unique<Model>();
        Model* const used = model.get();
        users_.push_back({std::move(model), used});
    }
}

std::string Player::play(const Call& call, const Outcome& expected) {
    try {
        return difference(expected, make(call));
    } catch (const Qel::Exception::Exception& caught) {
        return difference(expected, caught);
    } catch (const std::bad_alloc& caught) {
        return difference(expected, "std::bad_alloc", caught);
    } catch (const std::out_of_range& caught) {
        return difference(expected, "std::out_of_range", caught);
    } catch (const std::exception& caught) {
        return difference(expected, typeid(caught).name(), caught);
    }
}

Outcome Player::make(const Call& call) {
    User& user = users_.at(call.model);
    return std::visit([&](const auto& action) { return act(user, action); }, call.action);
}

Outcome Player::act(User& user, const SaveTo& call) {
    Qel::Mox2::SaverOptions options;
    options.overwrite = call.overwrite;
    options.sourceName = call.sourceName;
    options.sourceVersion = call.sourceVersion;
    options.sourceComment = call.sourceComment;
    user.used->saveTo(call.file.empty() ? "" : path_ + call.file, options);
    return {};
}

Outcome Player::act(User& user, const Close&) {
    user.used->close();
    return {};
}

Outcome Player::act(User& user, const Destroy&) {
    user.owner.reset();
    user.owner = std::make_unique<Model>();
    user.used = user.owner.get();
    return {};
}

// Only one of two models that share a database can be destroyed, and nothing frees what the other one had.
Outcome Player::act(User& user, const Share&) {
    const Api::MeantLeak leak;
    auto* const other = new Model;
    *other = *user.used;
    user.used = other;
    return {};
}

Outcome Player::act(User& user, const AddNode& call) {
    const auto type = static_cast<Qel::Mox2::NodeType>(call.type);
    return returned(call.attributes ? user.used->addNode(type, call.name, attributesOf(*call.attributes))
                                    : user.used->addNode(type, call.name));
}

Outcome Player::act(User& user, const SetCurrentNodeId& call) {
    user.used->setCurrentNodeId(call.id);
    return {};
}

Outcome Player::act(User& user, const MoveToParentNode&) {
    user.used->moveToParentNode();
    return {};
}

Outcome Player::act(User& user, const GetNodeId& call) {
    return returned(call.separator ? user.used->getNodeId(call.path, *call.separator)
                                   : user.used->getNodeId(call.path));
}

Outcome Player::act(User& user, const GetNodeIdOfNames& call) {
    return returned(user.used->getNodeId(call.names));
}

Outcome Player::act(User& user, const SetNodeData& call) {
    const Qel::Mox2::NodeProperties properties = propertiesOf(call.properties);
    if (call.attributes) {
        user.used->setNodeData(call.id, properties, attributesOf(*call.attributes));
    } else {
        user.used->setNodeData(call.id, properties);
    }
    return {};
}

Outcome Player::act(User& user, const AddPaths& call) {
    return returned(call.separator ? user.used->addAssemblyComponents(call.paths, *call.separator)
                                   : user.used->addAssemblyComponents(call.paths));
}

Outcome Player::act(User& user, const AddPathsWithAttributes& call) {
    std::map<std::string, Qel::Mox2::Attributes> paths;
    for (const auto& [path, attributes] : call.paths) {
        paths[path] = attributesOf(attributes);
    }
    return returned(call.separator ? user.used->addAssemblyComponents(paths, *call.separator)
                                   : user.used->addAssemblyComponents(paths));
}

Outcome Player::act(User& user, const AddArray& call) {
    const auto type = static_cast<Qel::Mox2::DatasetType>(call.type);
    const auto add = [&](const auto& array, const auto& ids, const auto& steps) {
        if (call.name && call.attributes) {
            user.used->addArrayProperty(*call.name, type, array, ids, steps, attributesOf(*call.attributes));
        } else if (call.name) {
            user.used->addArrayProperty(*call.name, type, array, ids, steps);
        } else if (call.attributes) {
            user.used->addArrayProperty(type, array, ids, steps, attributesOf(*call.attributes));
        } else {
            user.used->addArrayProperty(type, array, ids, steps);
        }
    };
    const auto addWithSteps = [&](const auto& array, const auto& ids) {
        if (call.isSingleStep) {
            add(array, ids, stepOf(call.steps.front()));
        } else {
            add(array, ids, stepListOf(call.steps));
        }
    };
    withArray(call, [&](const auto& array) {
        constexpr std::size_t negative = 0x80000000;
        if (call.isSingleId) {
            addWithSteps(array, call.ids.front());
        } else if (call.isNegativeIdCount) {
            addWithSteps(array, Array1d<unsigned int>(negative));
        } else {
            addWithSteps(array, Array1d<unsigned int>(call.ids));
        }
    });
    return {};
}

// The process's environment is not this class's.
Outcome Player::act(User&, const SetBlockSize&) {
    return {};
}

} // namespace RandomUse
