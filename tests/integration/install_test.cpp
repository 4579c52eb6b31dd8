#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "integration/captured_run.h"

namespace {

namespace fs = std::filesystem;

// One install into a fresh prefix for the whole suite; each test reads what landed there.
class InstalledProgram : public ::testing::Test {
protected:
    static inline fs::path base;
    static inline fs::path prefix;
    static inline CapturedRun install;

    static void SetUpTestSuite() {
        base = fs::temp_directory_path() / ("installed_program_" + std::to_string(getpid()));
        prefix = base / "prefix";
        fs::create_directories(base);
        install = runCaptured(CMAKE_COMMAND, base, {"--install", BUILD_DIR, "--prefix", prefix.string()},
                              base / "install_output");
    }
    static void TearDownTestSuite() { fs::remove_all(base); }

    void SetUp() override { ASSERT_EQ(install.exitCode, 0) << install.out << install.err; }

    static fs::path data() { return prefix / INSTALL_DATADIR; }
    static fs::path binary() { return prefix / INSTALL_BINDIR / "lumenscope"; }
};

// The value of `key` in a desktop entry's text, or empty.
std::string desktopValue(const std::string& entry, const std::string& key) {
    const size_t at = entry.find("\n" + key + "=");
    if (at == std::string::npos) return {};
    const size_t start = at + key.size() + 2;
    return entry.substr(start, entry.find('\n', start) - start);
}

// Every plain file below `root`, as paths relative to it.
std::vector<fs::path> filesBelow(const fs::path& root) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root))
        if (entry.is_regular_file()) files.push_back(fs::relative(entry.path(), root));
    return files;
}

TEST_F(InstalledProgram, EveryFileLandsWhereDesktopsAndManLookForIt) {
    EXPECT_EQ(fs::status(binary()).permissions() & fs::perms::owner_exec, fs::perms::owner_exec);
    EXPECT_TRUE(fs::is_regular_file(prefix / INSTALL_MANDIR / "man1" / "lumenscope.1"));

    for (const fs::path& icon : filesBelow(fs::path(PACKAGING_DIR) / "icons"))
        EXPECT_TRUE(fs::is_regular_file(data() / "icons" / icon)) << icon;
    for (const fs::path& file : filesBelow(SOURCE_MEDIA_DIR)) {
        // The shaders are built into the program and stay out of the install.
        if (*file.begin() == "shaders")
            EXPECT_FALSE(fs::exists(prefix / MEDIA_INSTALL_DIR / file)) << file;
        else if (file.filename() == ".keep")
            EXPECT_TRUE(fs::is_directory(prefix / MEDIA_INSTALL_DIR / file.parent_path())) << file;
        else
            EXPECT_TRUE(fs::is_regular_file(prefix / MEDIA_INSTALL_DIR / file)) << file;
    }

    // The desktop entry starts the installed binary by name and shows the installed icon; how the AppStream
    // description names the entry is the validators' part below.
    const std::string entry = readWholeFile(data() / "applications" / "org.example.lumenscope.desktop");
    EXPECT_EQ(desktopValue(entry, "Exec"), binary().filename().string());
    const fs::path icon = data() / "icons" / "hicolor" / "scalable" / "apps" / (desktopValue(entry, "Icon") + ".svg");
    EXPECT_TRUE(fs::is_regular_file(icon)) << icon;
}

// Software centres read the desktop entry, the AppStream description and the icon together; the validators
// check each file and how they refer to one another. Their notes of any level count as failures.
TEST_F(InstalledProgram, DesktopFilesPassTheDesktopValidators) {
    const fs::path entry = data() / "applications" / "org.example.lumenscope.desktop";
    const CapturedRun desktop = runCaptured("desktop-file-validate", base, {entry.string()}, base / "capture");
    EXPECT_EQ(desktop.exitCode, 0);
    EXPECT_EQ(desktop.out + desktop.err, "");

    const CapturedRun appstream = runCaptured(
        "appstreamcli", base, {"validate-tree", "--no-net", "--pedantic", prefix.string()}, base / "capture");
    EXPECT_EQ(appstream.exitCode, 0) << appstream.out << appstream.err;
    for (const char* level : {"E: ", "W: ", "I: ", "P: "})
        EXPECT_EQ(appstream.out.find(level), std::string::npos) << appstream.out;
}

TEST_F(InstalledProgram, RunsFromThePrefixForItsVersionAndABatchReport) {
    const fs::path work = base / "run";
    fs::create_directories(work);
    const CapturedRun version = runCaptured(binary().string(), work, {"--version"}, base / "capture");
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out, "Lumenscope 1.26.0.0\n");

    const CapturedRun report = runCaptured(
        binary().string(), work, {"/exp_txt_report", "/disable_cl_support", "/no_online_check"}, base / "capture");
    EXPECT_EQ(report.exitCode, 0) << report.err;
    EXPECT_NE(readWholeFile(work / "report.txt").find("Lumenscope v1.26.0.0"), std::string::npos);
}

// Runs `binary` with `args` as on a machine without a display.
CapturedRun runWithoutDisplay(const fs::path& binary, const fs::path& work, const std::vector<std::string>& args) {
    const char* names[] = {"DISPLAY", "WAYLAND_DISPLAY"};
    std::vector<std::pair<std::string, std::string>> saved;
    for (const char* name : names) {
        if (const char* value = std::getenv(name)) saved.emplace_back(name, value);
        unsetenv(name);
    }
    const CapturedRun run = runCaptured(binary.string(), work, args, work / "capture");
    for (const auto& [name, value] : saved) setenv(name.c_str(), value.c_str(), 1);
    return run;
}

// The window and the demos come from a module in the library directory; the reports need none of it.
TEST_F(InstalledProgram, FindsItsWindowModuleInTheLibraryDirectoryAndWritesReportsWithoutIt) {
    const fs::path module = prefix / INSTALL_LIBDIR / "lumenscope" / "lumenscope-desktop.so";
    ASSERT_TRUE(fs::is_regular_file(module));
    const fs::path work = base / "module_run";
    fs::create_directories(work);

    // Loaded: the window's own run starts and finds no display.
    const CapturedRun loaded = runWithoutDisplay(binary(), work, {"/no_online_check"});
    EXPECT_EQ(loaded.exitCode, 1);
    EXPECT_NE(loaded.err.find("Lumenscope cannot open its window"), std::string::npos) << loaded.err;

    const fs::path aside = base / "module_aside.so";
    fs::rename(module, aside);
    const CapturedRun missing = runWithoutDisplay(binary(), work, {"/no_online_check"});
    const CapturedRun report = runWithoutDisplay(binary(), work, {"/exp_json_report", "/disable_cl_support"});
    fs::rename(aside, module);

    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("cannot load the window and demo module"), std::string::npos) << missing.err;
    EXPECT_NE(missing.err.find(module.string()), std::string::npos) << "names the file it looked for";
    EXPECT_EQ(report.exitCode, 0) << report.err;
    EXPECT_TRUE(fs::is_regular_file(work / "report.json"));
}

// The version is written once, in the build; the program, its AppStream release and its manual page agree.
TEST_F(InstalledProgram, AppStreamReleaseAndManPageCarryTheProgramsVersion) {
    const CapturedRun version = runCaptured(binary().string(), base, {"--version"}, base / "capture");
    ASSERT_EQ(version.exitCode, 0);
    const std::string number = version.out.substr(version.out.find(' ') + 1, version.out.size() - 1 -
                                                                              (version.out.find(' ') + 1));
    const std::string metainfo = readWholeFile(data() / "metainfo" / "org.example.lumenscope.metainfo.xml");
    EXPECT_NE(metainfo.find("<release version=\"" + number + "\""), std::string::npos) << metainfo;
    EXPECT_EQ(metainfo.find('@'), std::string::npos) << "an unreplaced placeholder";
    const std::string page = readWholeFile(prefix / INSTALL_MANDIR / "man1" / "lumenscope.1");
    EXPECT_NE(page.find(number), std::string::npos);
}

TEST_F(InstalledProgram, ManPageRendersWithoutWarningsAndNamesEveryOption) {
    const fs::path page = prefix / INSTALL_MANDIR / "man1" / "lumenscope.1";
    const CapturedRun check = runCaptured("groff", base, {"-man", "-ww", "-z", page.string()}, base / "capture");
    EXPECT_EQ(check.exitCode, 0);
    EXPECT_EQ(check.err, "");

    // Wide enough that no description wraps; plain ASCII without overstriking.
    const CapturedRun text =
        runCaptured("groff", base, {"-man", "-Tascii", "-P-cbou", "-rLL=200n", page.string()}, base / "capture");
    ASSERT_EQ(text.exitCode, 0) << text.err;
    // An option's name stands first on its line, indented one step as the section's tags are.
    std::vector<std::string> tags;
    std::istringstream lines(text.out);
    for (std::string line; std::getline(lines, line);) {
        const bool tag = line.rfind("       /", 0) == 0 || line.rfind("       -", 0) == 0;
        if (tag) tags.push_back(line.substr(7, line.find(' ', 7) - 7));
    }
    std::vector<std::string> expected;
    for (const OptionDescription& option : describedOptions()) {
        expected.push_back(std::string(option.text) + (option.value ? option.value : ""));
        EXPECT_NE(text.out.find(option.description), std::string::npos) << option.text;
    }
    EXPECT_EQ(tags, expected);
}

}  // namespace

// The metrics endpoint comes from a module of its own, so that no other run maps the HTTP server and TLS
// libraries: the program does not even name them.
TEST_F(InstalledProgram, ServesMetricsFromItsOwnModuleAndTheProgramNeedsNoHttpServer) {
    const fs::path module = prefix / INSTALL_LIBDIR / "lumenscope" / "lumenscope-metrics.so";
    ASSERT_TRUE(fs::is_regular_file(module));
    const fs::path work = base / "metrics_module_run";
    fs::create_directories(work);

    const CapturedRun needed = runCaptured("readelf", work, {"--dynamic", binary().string()}, work / "readelf");
    ASSERT_EQ(needed.exitCode, 0) << needed.err;
    EXPECT_NE(needed.out.find("(NEEDED)"), std::string::npos) << needed.out;
    for (const char* library : {"libmicrohttpd", "libgnutls", "libcrypt.so"})
        EXPECT_EQ(needed.out.find(library), std::string::npos) << library << " in\n" << needed.out;
    const CapturedRun moduleNeeds = runCaptured("readelf", work, {"--dynamic", module.string()}, work / "readelf");
    EXPECT_NE(moduleNeeds.out.find("libmicrohttpd"), std::string::npos) << moduleNeeds.out;

    // Loaded: the module reads the line itself and refuses an address that is none.
    const CapturedRun loaded = runWithoutDisplay(binary(), work, {"--serve-metrics=not-an-address"});
    EXPECT_EQ(loaded.exitCode, 2) << loaded.err;
    EXPECT_NE(loaded.err.find("--serve-metrics"), std::string::npos) << loaded.err;

    const fs::path aside = base / "metrics_module_aside.so";
    fs::rename(module, aside);
    const CapturedRun missing = runWithoutDisplay(binary(), work, {"--serve-metrics=127.0.0.1:0"});
    fs::rename(aside, module);
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("cannot load the metrics module"), std::string::npos) << missing.err;
    EXPECT_NE(missing.err.find(module.string()), std::string::npos) << "names the file it looked for";
}
