#include "exporter/tls_files.h"

#include <sys/stat.h>

#include <fstream>
#include <sstream>

namespace exporter {

std::optional<std::string> readWholeFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad())
        return std::nullopt;
    return text.str();
}

std::optional<TlsFiles> readTlsFiles(const std::string& certificateFile, const std::string& keyFile,
                                     std::string* error)
{
    struct stat keyStatus {};
    if (stat(keyFile.c_str(), &keyStatus) != 0) {
        *error = "cannot read the TLS key " + keyFile;
        return std::nullopt;
    }
    if ((keyStatus.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        *error = "the TLS key " + keyFile + " is open to other users; make it readable by its owner only (chmod 600)";
        return std::nullopt;
    }
    TlsFiles files;
    std::optional<std::string> certificate = readWholeFile(certificateFile);
    std::optional<std::string> key = readWholeFile(keyFile);
    if (!certificate || certificate->empty()) {
        *error = "cannot read the TLS certificate " + certificateFile;
        return std::nullopt;
    }
    if (!key || key->empty()) {
        *error = "cannot read the TLS key " + keyFile;
        return std::nullopt;
    }
    files.certificatePem = std::move(*certificate);
    files.keyPem = std::move(*key);
    return files;
}

}  // namespace exporter
