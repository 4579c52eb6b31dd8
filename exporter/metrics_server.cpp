#include "exporter/metrics_server.h"

#include "exporter/auth_file.h"
#include "exporter/basic_auth_check.h"
#include "exporter/connection_deadlines.h"
#include "exporter/tls_files.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using exporter::BasicAuthCheck;
using exporter::ConnectionDeadlines;

constexpr unsigned kConnectionLimit = 256;
constexpr auto kRequestDeadline = 10s;             // for the whole request to arrive, however it trickles in
constexpr unsigned kIdleTimeoutSeconds = 10;       // the library's own: a connection that sends nothing
constexpr size_t kLongestRequestHead = 8 * 1024;   // request line and headers together
constexpr auto kStopPollInterval = 50ms;
constexpr const char* kExpositionType = "text/plain; version=0.0.4; charset=utf-8";
constexpr const char* kIndexPage =
    "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Lumenscope exporter</title></head>\n"
    "<body><h1>Lumenscope exporter</h1><p><a href=\"/metrics\">Metrics</a></p></body></html>\n";

struct DaemonStop {
    void operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }
};
struct ResponseRelease {
    void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};
using Daemon = std::unique_ptr<MHD_Daemon, DaemonStop>;
using Response = std::unique_ptr<MHD_Response, ResponseRelease>;

struct ServerState {
    const MetricsRenderer& render;
    std::unique_ptr<BasicAuthCheck> auth;  // none: no authentication asked for
    ConnectionDeadlines deadlines{kRequestDeadline};
};

struct Header {
    const char* name;
    const char* value;
};

MHD_Result answer(MHD_Connection* connection, unsigned status, const std::string& body, const char* contentType,
                  std::initializer_list<Header> extra = {})
{
    Response response(MHD_create_response_from_buffer(body.size(), const_cast<char*>(body.data()),
                                                      MHD_RESPMEM_MUST_COPY));
    if (!response)
        return MHD_NO;
    MHD_add_response_header(response.get(), MHD_HTTP_HEADER_CONTENT_TYPE, contentType);
    for (const Header& header : extra)
        MHD_add_response_header(response.get(), header.name, header.value);
    return MHD_queue_response(connection, status, response.get());
}

MHD_Result answerText(MHD_Connection* connection, unsigned status, const std::string& body,
                      std::initializer_list<Header> extra = {})
{
    return answer(connection, status, body, "text/plain; charset=utf-8", extra);
}

MHD_Result addValueSize(void* total, MHD_ValueKind, const char* key, const char* value)
{
    *static_cast<size_t*>(total) += std::strlen(key) + (value ? std::strlen(value) : 0) + 4;  // ": " and CRLF
    return MHD_YES;
}

size_t valuesSize(MHD_Connection* connection, MHD_ValueKind kind)
{
    size_t total = 0;
    MHD_get_connection_values(connection, kind, addValueSize, &total);
    return total;
}

std::string renderedOrNothing(const MetricsRenderer& render)
{
    try {
        return render();
    } catch (...) {
        return {};
    }
}

MHD_Result handleRequest(void* context, MHD_Connection* connection, const char* url, const char* method,
                         const char*, const char*, size_t*, void** requestContext)
{
    auto& state = *static_cast<ServerState*>(context);
    // The first call comes with the headers in; every answer is queued there, so a body is never waited for.
    if (*requestContext != nullptr)
        return MHD_NO;
    *requestContext = &state;
    state.deadlines.requestArrived(connection);

    const size_t lineSize = std::strlen(method) + std::strlen(url) + valuesSize(connection, MHD_GET_ARGUMENT_KIND);
    const size_t headersSize = valuesSize(connection, MHD_HEADER_KIND);
    if (lineSize > kLongestRequestHead)
        return answerText(connection, MHD_HTTP_URI_TOO_LONG, "Request line too long\n");
    if (lineSize + headersSize > kLongestRequestHead)
        return answerText(connection, MHD_HTTP_REQUEST_HEADER_FIELDS_TOO_LARGE, "Request headers too large\n");

    if (state.auth) {
        const char* authorization =
            MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_AUTHORIZATION);
        if (!state.auth->allows(authorization ? authorization : ""))
            return answerText(connection, MHD_HTTP_UNAUTHORIZED, "Unauthorized\n",
                              {{MHD_HTTP_HEADER_WWW_AUTHENTICATE, "Basic realm=\"lumenscope\", charset=\"UTF-8\""}});
    }

    const std::string_view verb = method;
    if (verb != MHD_HTTP_METHOD_GET && verb != MHD_HTTP_METHOD_HEAD)
        return answerText(connection, MHD_HTTP_METHOD_NOT_ALLOWED, "Method not allowed\n",
                          {{MHD_HTTP_HEADER_ALLOW, "GET, HEAD"}});

    const std::string_view path = url;
    if (path == "/metrics") {
        const std::string text = renderedOrNothing(state.render);
        if (text.empty())
            return answerText(connection, MHD_HTTP_INTERNAL_SERVER_ERROR, "No metrics could be rendered\n");
        return answer(connection, MHD_HTTP_OK, text, kExpositionType);
    }
    if (path == "/")
        return answer(connection, MHD_HTTP_OK, kIndexPage, "text/html; charset=utf-8");
    return answerText(connection, MHD_HTTP_NOT_FOUND, "Not found; the metrics are at /metrics\n");
}

void connectionEvent(void* context, MHD_Connection* connection, void**, MHD_ConnectionNotificationCode code)
{
    auto& state = *static_cast<ServerState*>(context);
    if (code == MHD_CONNECTION_NOTIFY_STARTED) {
        if (const MHD_ConnectionInfo* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD))
            state.deadlines.opened(connection, info->connect_fd);
    } else {
        state.deadlines.closed(connection);
    }
}

void requestCompleted(void* context, MHD_Connection* connection, void**, MHD_RequestTerminationCode)
{
    static_cast<ServerState*>(context)->deadlines.requestFinished(connection);
}

// The socket address to bind; the address text was checked by parseMetricsAddress.
struct BindAddress {
    sockaddr_storage storage{};
    bool ipv6 = false;
};

std::optional<BindAddress> bindAddress(const MetricsServerOptions& options)
{
    BindAddress bind;
    auto* v4 = reinterpret_cast<sockaddr_in*>(&bind.storage);
    auto* v6 = reinterpret_cast<sockaddr_in6*>(&bind.storage);
    if (inet_pton(AF_INET, options.address.c_str(), &v4->sin_addr) == 1) {
        v4->sin_family = AF_INET;
        v4->sin_port = htons(options.port);
        return bind;
    }
    if (inet_pton(AF_INET6, options.address.c_str(), &v6->sin6_addr) == 1) {
        v6->sin6_family = AF_INET6;
        v6->sin6_port = htons(options.port);
        bind.ipv6 = true;
        return bind;
    }
    return std::nullopt;
}

std::unique_ptr<BasicAuthCheck> loadAuthFile(const std::string& path, std::string* error)
{
    std::optional<std::string> text = exporter::readWholeFile(path);
    if (!text) {
        *error = "cannot read the users file " + path;
        return nullptr;
    }
    std::vector<exporter::AuthUser> users;
    std::string fault;
    if (!exporter::parseAuthFile(*text, users, &fault)) {
        *error = "the users file " + path + ": " + fault;
        return nullptr;
    }
    return std::make_unique<BasicAuthCheck>(std::move(users));
}

}  // namespace

int serveMetrics(const MetricsServerOptions& options, const MetricsRenderer& render, const std::atomic<bool>& stop)
{
    std::string error;
    const std::optional<BindAddress> bind = bindAddress(options);
    if (!bind) {
        std::cerr << "lumenscope: '" << options.address << "' is not an address to serve metrics on\n";
        return 1;
    }
    if (options.tlsCertFile.has_value() != options.tlsKeyFile.has_value()) {
        std::cerr << "lumenscope: TLS needs both --metrics-tls-cert and --metrics-tls-key\n";
        return 1;
    }
    std::optional<exporter::TlsFiles> tls;
    if (options.tlsCertFile) {
        tls = exporter::readTlsFiles(*options.tlsCertFile, *options.tlsKeyFile, &error);
        if (!tls) {
            std::cerr << "lumenscope: " << error << '\n';
            return 1;
        }
    }
    ServerState state{render, nullptr};
    if (options.authFile) {
        state.auth = loadAuthFile(*options.authFile, &error);
        if (!state.auth) {
            std::cerr << "lumenscope: " << error << '\n';
            return 1;
        }
    }

    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 2u, 8u);
    std::vector<MHD_OptionItem> items = {
        {MHD_OPTION_SOCK_ADDR, 0, const_cast<sockaddr_storage*>(&bind->storage)},
        {MHD_OPTION_THREAD_POOL_SIZE, threads, nullptr},
        {MHD_OPTION_CONNECTION_LIMIT, kConnectionLimit, nullptr},
        {MHD_OPTION_CONNECTION_TIMEOUT, kIdleTimeoutSeconds, nullptr},
        {MHD_OPTION_STRICT_FOR_CLIENT, 1, nullptr},
        {MHD_OPTION_NOTIFY_CONNECTION, reinterpret_cast<intptr_t>(&connectionEvent), &state},
        {MHD_OPTION_NOTIFY_COMPLETED, reinterpret_cast<intptr_t>(&requestCompleted), &state},
    };
    unsigned flags = MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_AUTO | MHD_USE_ITC;
    if (bind->ipv6)
        flags |= MHD_USE_IPv6;
    if (tls) {
        flags |= MHD_USE_TLS;
        items.push_back({MHD_OPTION_HTTPS_MEM_CERT, 0, tls->certificatePem.data()});
        items.push_back({MHD_OPTION_HTTPS_MEM_KEY, 0, tls->keyPem.data()});
    }
    items.push_back({MHD_OPTION_END, 0, nullptr});

    Daemon daemon(MHD_start_daemon(flags, options.port, nullptr, nullptr, handleRequest, &state,
                                   MHD_OPTION_ARRAY, items.data(), MHD_OPTION_END));
    if (!daemon) {
        std::cerr << "lumenscope: cannot serve metrics on " << options.address << ':' << options.port << " ("
                  << (errno ? std::strerror(errno) : "the server library refused the settings") << ")\n";
        return 1;
    }
    const MHD_DaemonInfo* bound = MHD_get_daemon_info(daemon.get(), MHD_DAEMON_INFO_BIND_PORT);
    const std::string host = bind->ipv6 ? "[" + options.address + "]" : options.address;
    std::cerr << "lumenscope: serving metrics at " << (tls ? "https" : "http") << "://" << host << ':'
              << (bound ? bound->port : options.port) << "/metrics" << std::endl;

    while (!stop.load()) {
        std::this_thread::sleep_for(kStopPollInterval);
        state.deadlines.dropOverdue(ConnectionDeadlines::Clock::now());
    }
    daemon.reset();
    return 0;
}
