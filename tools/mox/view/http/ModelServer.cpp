#include "ModelServer.h"

#include "../../common/Failure.h"
#include "../ViewPage.h"
#include "../blockText.h"
#include "../pageSource.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <random>
#include <utility>

namespace MoxTool {

namespace {

constexpr const char* Host = "127.0.0.1";
constexpr std::string_view NoConnection = "connect-src 'none'";
constexpr std::string_view OwnConnection = "connect-src 'self'";
constexpr std::size_t LongestRequest = 4096;

std::string randomText() {
    std::random_device random;
    std::string text;
    for (int i = 0; i < 4; ++i) {
        text += fmt::format("{:08x}", random());
    }
    return text;
}

// By default the library lets several servers share a port.
void setSocketOptions(socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&yes), sizeof(yes));
}

} // namespace

ModelServer::ModelServer(ViewModel& model, std::string path)
    : model_(model), path_(std::move(path)), secret_(randomText()) {
    for (auto& array : model.meshArrays()) {
        arrays_.emplace(array.name, deflated(array.bytes));
        array.bytes.clear();
    }
    server_.set_socket_options(setSocketOptions);
    server_.set_keep_alive_timeout(1);
    server_.set_payload_max_length(LongestRequest);
    server_.set_default_headers({{"Cache-Control", "no-store"},
                                 {"X-Content-Type-Options", "nosniff"},
                                 {"X-Frame-Options", "DENY"},
                                 {"Content-Security-Policy", "frame-ancestors 'none'"},
                                 {"Referrer-Policy", "no-referrer"},
                                 {"Cross-Origin-Resource-Policy", "same-origin"}});
    server_.set_pre_routing_handler([this](const auto& request, auto& response) {
        if (!isForeign(request)) {
            return httplib::Server::HandlerResponse::Unhandled;
        }
        response.status = 403;
        return httplib::Server::HandlerResponse::Handled;
    });
    server_.Get("/" + secret_ + "/", [this](const auto&, auto& response) { answerPage(response); });
    server_.Get("/" + secret_ + "/block/([A-Za-z0-9-]+)", [this](const auto& request, auto& response) {
        answerBlock(request.matches[1].str(), response);
    });
}

std::string ModelServer::bind() {
    port_ = server_.bind_to_any_port(Host);
    if (port_ <= 0) {
        throw Failure(path_, "can't be served: this machine has no free port");
    }
    return fmt::format("http://{}:{}/{}/", Host, port_, secret_);
}

// A page from elsewhere can reach this address, but not hide where it is from; and a name that leads here is
// not the name of this server.
bool ModelServer::isForeign(const httplib::Request& request) const {
    const auto own = fmt::format("{}:{}", Host, port_);
    const auto origin = request.get_header_value("Origin");
    const auto site = request.get_header_value("Sec-Fetch-Site");
    const bool isOwnSite = site.empty() || site == "same-origin" || site == "none";
    return (request.method != "GET" && request.method != "HEAD") || request.get_header_value("Host") != own ||
           (!origin.empty() && origin != "http://" + own) || !isOwnSite;
}

void ModelServer::answerPage(httplib::Response& response) const {
    auto description = model_.description();
    description["served"] = true;
    std::string page(pageSource().head);
    page.replace(page.find(NoConnection), NoConnection.size(), OwnConnection);
    page += "<script type=\"application/json\" id=\"model\">" + pageJson(description) + "</script>\n";
    page += pageSource().tail;
    response.set_content(page, "text/html; charset=utf-8");
}

void ModelServer::answerBlock(const std::string& name, httplib::Response& response) {
    constexpr const char* Type = "application/octet-stream";
    if (const auto array = arrays_.find(name); array != arrays_.end()) {
        response.set_content(array->second, Type);
        return;
    }
    for (std::size_t field = 0; field < model_.fields().size(); ++field) {
        for (const auto step : model_.fields()[field].steps) {
            if (ViewModel::resultBlockName(field, step) == name) {
                response.set_content(resultBlock(model_.fields()[field], step), Type);
                return;
            }
        }
    }
    response.status = 404;
}

std::string ModelServer::resultBlock(const ViewField& field, std::size_t step) {
    const std::lock_guard lock(mutex_);
    return deflated(model_.resultBlock(field, step).bytes);
}

} // namespace MoxTool
