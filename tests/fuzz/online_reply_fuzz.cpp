// The parsers of what our servers send back, and of the server the command line names, on any bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "report/online/online_hosts.h"
#include "report/online/reply_parsers.h"
#include "report/online/text_filters.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    const online::SubmitReply reply = online::parseSubmitReply(bytes);
    if (reply.urlParam.size() > online::kUrlParamLimit || reply.message.size() > online::kMessageLimit) std::abort();
    if (!reply.urlParam.empty() && reply.result != 0) std::abort();
    if (!reply.message.empty() && reply.result != -1) std::abort();

    online::VersionNumber latest = {};
    const bool found = online::parseVersionReply(bytes, latest);
    if (found != (bytes.find('[') != std::string_view::npos)) std::abort();
    online::compareWithThisVersion(latest);

    if (const auto hosts = online::onlineHostsFromUrl(bytes)) {
        if (!hosts->web.starts_with("http://") && !hosts->web.starts_with("https://")) std::abort();
        if (hosts->web.ends_with('/') || hosts->web.find_first_of(" /?#@", 8) != std::string::npos) std::abort();
    }

    for (const std::string& filtered : {online::sanitizeForUrl(bytes), online::sanitizeKeepOnly(bytes)})
        if (filtered.size() > online::kFilterResultLimit || filtered.find_first_of("&=") != std::string::npos)
            std::abort();
    return 0;
}
