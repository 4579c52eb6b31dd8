#pragma once
// A self-signed certificate for 127.0.0.1 made with openssl, and a users file of bcrypt hashes made with crypt_r,
// in the test's temporary folder.

#include "metrics_endpoint/metrics_client.h"

#include <gtest/gtest.h>

#include <crypt.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>
#include <vector>

struct TestCertificate {
    bool made = false;
    std::string message;
    std::filesystem::path certificate, key;
};

inline TestCertificate makeTestCertificate()
{
    TestCertificate made;
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / ("tls-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    made.certificate = folder / "cert.pem";
    made.key = folder / "key.pem";
    const CommandResult result = runCommand(
        "openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1"
        " -keyout " + made.key.string() + " -out " + made.certificate.string() + " 2>&1");
    made.message = result.output;
    made.made = result.status == 0 && chmod(made.key.c_str(), 0600) == 0;
    return made;
}

// A bcrypt hash of the password, cost 5 to keep the tests quick.
inline std::string bcryptHash(const std::string& password)
{
    char salt[CRYPT_GENSALT_OUTPUT_SIZE];
    if (!crypt_gensalt_rn("$2b$", 5, nullptr, 0, salt, sizeof salt))
        return {};
    auto data = std::make_unique<crypt_data>();
    const char* hash = crypt_r(password.c_str(), salt, data.get());
    return hash && hash[0] != '*' ? hash : "";
}

struct TestUsersFile {
    bool made = false;
    std::string message;
    std::filesystem::path path;
};

inline TestUsersFile makeUsersFile(const std::vector<std::pair<std::string, std::string>>& users)
{
    TestUsersFile made;
    made.path = std::filesystem::path(testing::TempDir()) / ("users-" + std::to_string(getpid()));
    std::ofstream out(made.path);
    out << "# user:bcrypt-hash\n\n";
    for (const auto& [user, password] : users) {
        const std::string hash = bcryptHash(password);
        if (hash.empty()) {
            made.message = "crypt_r made no bcrypt hash";
            return made;
        }
        out << user << ':' << hash << '\n';
    }
    made.made = static_cast<bool>(out.flush());
    return made;
}
