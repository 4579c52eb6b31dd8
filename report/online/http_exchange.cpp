#include "report/online/http_exchange.h"

#include <curl/curl.h>

#include <memory>
#include <mutex>
#include <string_view>

namespace online {

namespace {

struct EasyHandleDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct HeaderListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using EasyHandle = std::unique_ptr<CURL, EasyHandleDeleter>;
using HeaderList = std::unique_ptr<curl_slist, HeaderListDeleter>;

// libcurl's global state is set up once and never torn down: an update check may still be running when the
// process ends, and tearing it down under that thread would pull the ground from under it.
bool initialiseLibcurl() {
    static std::once_flag once;
    static bool ready = false;
    std::call_once(once, [] { ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK; });
    return ready;
}

struct ReplyCollector {
    std::string bytes;
    size_t limit = 0;
};

// Headers and body go to the same collector in arrival order. Past the limit the transfer is stopped by
// taking fewer bytes than offered; what was kept still counts.
size_t collect(char* data, size_t size, size_t count, void* user) {
    auto* collector = static_cast<ReplyCollector*>(user);
    const size_t offered = size * count;
    const size_t room = collector->limit - collector->bytes.size();
    collector->bytes.append(data, offered < room ? offered : room);
    return offered <= room ? offered : 0;
}

int checkCancel(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    const auto* cancel = static_cast<const std::atomic<bool>*>(user);
    return cancel->load() ? 1 : 0;
}

bool isWebAddress(std::string_view url) { return url.starts_with("http://") || url.starts_with("https://"); }

HeaderList headerLinesFor(const HttpRequest& request) {
    // An empty value removes a line libcurl would add by itself.
    curl_slist* list = curl_slist_append(nullptr, "Accept:");
    if (list) list = curl_slist_append(list, "Expect:");
    if (list && request.formBody) {
        list = curl_slist_append(list, "Content-Type: application/x-www-form-urlencoded");
        const std::string length = "Content-Length: " + std::to_string(request.formBody->size());
        if (list) list = curl_slist_append(list, length.c_str());
    }
    return HeaderList(list);
}

}  // namespace

std::string exchange(const HttpRequest& request) {
    if (!isWebAddress(request.url) || request.replyLimit == 0 || !initialiseLibcurl()) return {};
    EasyHandle handle(curl_easy_init());
    if (!handle) return {};
    HeaderList headers = headerLinesFor(request);
    if (!headers) return {};

    CURL* h = handle.get();
    ReplyCollector collector;
    collector.limit = request.replyLimit;
    curl_easy_setopt(h, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(h, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(h, CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(h, CURLOPT_NOSIGNAL, 1L);  // time-outs without SIGALRM: this runs on worker threads
    curl_easy_setopt(h, CURLOPT_CONNECTTIMEOUT_MS, request.limits.connectTimeoutMs);
    curl_easy_setopt(h, CURLOPT_TIMEOUT_MS, request.limits.totalTimeoutMs);
    curl_easy_setopt(h, CURLOPT_USERAGENT, request.userAgent.c_str());
    if (!request.referer.empty()) curl_easy_setopt(h, CURLOPT_REFERER, request.referer.c_str());
    curl_easy_setopt(h, CURLOPT_HTTPHEADER, headers.get());
    // A proxy's answer to CONNECT is not the server's reply and must not lend it a bracket.
    curl_easy_setopt(h, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, collect);
    curl_easy_setopt(h, CURLOPT_HEADERDATA, &collector);
    curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, collect);
    curl_easy_setopt(h, CURLOPT_WRITEDATA, &collector);
    if (request.formBody) {
        curl_easy_setopt(h, CURLOPT_POSTFIELDS, request.formBody->data());
        curl_easy_setopt(h, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(request.formBody->size()));
    }
    if (request.cancel) {
        curl_easy_setopt(h, CURLOPT_NOPROGRESS, 0L);
        curl_easy_setopt(h, CURLOPT_XFERINFOFUNCTION, checkCancel);
        curl_easy_setopt(h, CURLOPT_XFERINFODATA, request.cancel);
    }
    // The outcome code adds nothing: a time-out or a cut after some bytes still leaves those bytes to read.
    curl_easy_perform(h);
    return std::move(collector.bytes);
}

}  // namespace online
