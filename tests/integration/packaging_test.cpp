// The exporter's service unit as systemd reads it, and the Debian package as dpkg sees it.

#include "metrics_endpoint/metrics_client.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

fs::path freshFolder(const std::string& name)
{
    const fs::path folder = fs::temp_directory_path() / (name + "_" + std::to_string(getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder;
}

std::string quoted(const fs::path& path) { return "'" + path.string() + "'"; }

TEST(ServiceUnit, SystemdAnalyzeVerifyAcceptsItInstalledWithTheProgram)
{
    // systemd checks that the command exists, so the unit is checked in a root holding the whole install under
    // /usr, as the package lays it out. Its manual page check runs man on this machine, not in the root.
    const fs::path root = freshFolder("service_unit_root");
    const CommandResult install = runCommand("DESTDIR=" + quoted(root) + " " CMAKE_COMMAND " --install " BUILD_DIR
                                             " --prefix /usr 2>&1");
    ASSERT_EQ(install.status, 0) << install.output;
    ASSERT_TRUE(fs::is_regular_file(root / "usr/lib/systemd/system/lumenscope-exporter.service"));
    ASSERT_TRUE(fs::is_regular_file(root / "usr/share/man/man1/lumenscope.1"));  // what Documentation= names
    // The targets the unit is ordered against come from this machine's systemd.
    fs::copy("/usr/lib/systemd/system", root / "usr/lib/systemd/system",
             fs::copy_options::recursive | fs::copy_options::skip_existing | fs::copy_options::copy_symlinks);

    const CommandResult verify = runCommand("systemd-analyze verify --man=no --root=" + quoted(root) +
                                            " /usr/lib/systemd/system/lumenscope-exporter.service 2>&1");
    EXPECT_EQ(verify.status, 0) << verify.output;
    EXPECT_EQ(verify.output, "");

    // The device nodes NVML opens stay visible; the rest of the system is read-only to the service.
    std::ifstream unit(SERVICE_UNIT);
    std::stringstream text;
    text << unit.rdbuf();
    EXPECT_EQ(text.str().find("\nPrivateDevices="), std::string::npos);
    for (const char* line : {"\nDynamicUser=yes\n", "\nProtectSystem=strict\n", "\nNoNewPrivileges=yes\n"})
        EXPECT_NE(text.str().find(line), std::string::npos) << line;
    fs::remove_all(root);
}

TEST(DebianPackage, HoldsTheProgramItsModuleDataAndServiceAndDeclaresItsLibraries)
{
    const fs::path folder = freshFolder("debian_package");
    const CommandResult build = runCommand("cd " + quoted(folder) + " && " CPACK_COMMAND " -G DEB --config " BUILD_DIR
                                           "/CPackConfig.cmake 2>&1");
    ASSERT_EQ(build.status, 0) << build.output;
    fs::path package;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".deb")
            package = entry.path();
    ASSERT_FALSE(package.empty()) << build.output;

    const CommandResult contents = runCommand("dpkg-deb -c " + quoted(package) + " 2>&1");
    ASSERT_EQ(contents.status, 0) << contents.output;
    const std::string expected[] = {
        " ./usr/bin/lumenscope\n",
        " ./usr/" PACKAGE_LIBDIR "/lumenscope/lumenscope-desktop.so\n",
        " ./usr/" PACKAGE_LIBDIR "/lumenscope/lumenscope-metrics.so\n",
        " ./usr/share/man/man1/lumenscope.1",  // compressed or not, as the packager chooses
        " ./usr/share/applications/org.example.lumenscope.desktop\n",
        " ./usr/share/metainfo/org.example.lumenscope.metainfo.xml\n",
        " ./usr/share/icons/hicolor/",
        " ./usr/share/lumenscope/media/",
        " ./usr/lib/systemd/system/lumenscope-exporter.service\n",
    };
    for (const std::string& path : expected)
        EXPECT_NE(contents.output.find(path), std::string::npos) << path << " is not in\n" << contents.output;
    // Nothing of the build, the tests or their fakes.
    for (const char* stray : {"gtest", "fake", "fixed_metrics_server", "CMakeFiles"})
        EXPECT_EQ(contents.output.find(stray), std::string::npos) << stray;

    const CommandResult depends = runCommand("dpkg-deb -f " + quoted(package) + " Depends 2>&1");
    EXPECT_EQ(depends.status, 0);
    EXPECT_NE(depends.output.find("libc6"), std::string::npos) << depends.output;
    EXPECT_NE(depends.output.find("libqt6widgets6"), std::string::npos) << depends.output;  // the window module's
    EXPECT_NE(depends.output.find("libmicrohttpd"), std::string::npos) << depends.output;  // the endpoint's
    fs::remove_all(folder);
}

}  // namespace
