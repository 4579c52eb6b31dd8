#pragma once
// The certificate and key of the TLS endpoint, read whole into memory for libmicrohttpd.

#include <optional>
#include <string>

namespace exporter {

struct TlsFiles {
    std::string certificatePem;
    std::string keyPem;
};

// Both files' text; nothing, with a message, when one cannot be read or the key is readable by anyone but
// its owner.
std::optional<TlsFiles> readTlsFiles(const std::string& certificateFile, const std::string& keyFile,
                                     std::string* error);

// A whole file's text; nothing when it cannot be read.
std::optional<std::string> readWholeFile(const std::string& path);

}  // namespace exporter
