// What the metrics endpoint parses itself, on any text: the Authorization header, the users file and the
// address to serve on. The input is split at NUL bytes; every part goes to every parser.
#include <cstdlib>
#include <string>

#include "exporter/auth_file.h"
#include "exporter/basic_auth_header.h"
#include "exporter/metrics_server.h"
#include "fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (std::string_view part : splitFuzzInput(data, size)) {
        if (const auto credential = exporter::parseBasicAuthorization(part)) {
            // A user is never empty and never holds the colon that ends it.
            if (credential->user.empty() || credential->user.find(':') != std::string::npos) std::abort();
        }
        if (const auto decoded = exporter::decodeBase64(part)) {
            if (decoded->size() > part.size() / 4 * 3) std::abort();
        }

        std::vector<exporter::AuthUser> users;
        std::string error;
        if (exporter::parseAuthFile(part, users, &error)) {
            for (const exporter::AuthUser& user : users)
                if (user.user.empty() || user.bcryptHash.size() != 60) std::abort();
        } else if (error.empty()) {
            std::abort();
        }

        MetricsServerOptions options;
        if (!parseMetricsAddress(std::string(part), options, &error) && error.empty()) std::abort();
    }
    return 0;
}
