#pragma once

#include "../ViewModel.h"

#include <httplib.h>

#include <map>
#include <mutex>
#include <string>

namespace MoxTool {

/// Answers the page of a model and the blocks that it asks for: to browsers on this machine alone, and only
/// under an address that contains a secret, so that other users of the machine can't read along.
class ModelServer {
public:
    /// @param model Must outlive the server.
    ModelServer(ViewModel& model, std::string path);

    /// Takes a free port. @return the page's address.
    /// @throws Failure if there is none.
    std::string bind();
    /// Answers until the process ends or stop() is called.
    void listen() { server_.listen_after_bind(); }
    void stop() { server_.stop(); }
    bool isRunning() const { return server_.is_running(); }

private:
    bool isForeign(const httplib::Request& request) const;
    void answerPage(httplib::Response& response) const;
    void answerBlock(const std::string& name, httplib::Response& response);
    std::string resultBlock(const ViewField& field, std::size_t step);

    ViewModel& model_;
    std::string path_;
    std::string secret_;
    int port_ = 0;
    std::mutex mutex_; ///< The model reads one result at a time.
    std::map<std::string, std::string> arrays_;
    httplib::Server server_;
};

} // namespace MoxTool
