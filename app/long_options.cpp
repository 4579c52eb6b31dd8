#include "app/long_options.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string_view>

namespace {

enum class ValueRule { none, required, optional };

// One two-dash option: its name, whether it takes a value, what --help says (the placeholder with its '='),
// and what it sets. `apply` gets
// the text after '=' (empty for a flag) and answers false with a message for a value it cannot use.
struct LongOption {
    const char* name;
    ValueRule valueRule;
    const char* value;  // placeholder shown in the help, null for a flag
    const char* description;
    bool (*apply)(LongOptions& options, std::string_view value, std::string* error);
};

// A whole decimal number within [low, high]; nothing else in the text.
std::optional<long> wholeNumber(std::string_view text, long low, long high) {
    if (text.empty() || text.size() > 18) return std::nullopt;
    const std::string copy(text);
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(copy.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || value < low || value > high) return std::nullopt;
    return value;
}

bool setPath(std::optional<std::string>& field, std::string_view value, std::string* error, const char* what) {
    if (value.empty()) {
        *error = std::string(what) + " needs a path after '='";
        return false;
    }
    field = std::string(value);
    return true;
}

constexpr auto kLongOptions = std::to_array<LongOption>({
    {"--json", ValueRule::none, nullptr, "print report.json's text on standard output; no file is written",
     [](LongOptions& o, std::string_view, std::string*) { return o.json = true; }},
    {"--monitor", ValueRule::none, nullptr, "print the live readings of every GPU, one line per GPU per tick",
     [](LongOptions& o, std::string_view, std::string*) { return o.monitor = true; }},
    {"--interval", ValueRule::required, "=MS", "monitor: milliseconds between ticks, at least 100 (1000)",
     [](LongOptions& o, std::string_view v, std::string* error) {
         const std::optional<long> ms = wholeNumber(v, kMinMonitorIntervalMs, INT_MAX);
         if (!ms) *error = "--interval needs a whole number of milliseconds, at least 100";
         if (ms) o.intervalMs = int(*ms);
         return ms.has_value();
     }},
    {"--count", ValueRule::required, "=N", "monitor: end after N ticks",
     [](LongOptions& o, std::string_view v, std::string* error) {
         o.count = wholeNumber(v, 1, LONG_MAX);
         if (!o.count) *error = "--count needs a whole number, at least 1";
         return o.count.has_value();
     }},
    {"--format", ValueRule::required, "=csv|jsonl", "monitor: comma-separated lines or JSON Lines (csv)",
     [](LongOptions& o, std::string_view v, std::string* error) {
         if (v == "csv" || v == "jsonl") {
             o.format = v == "csv" ? MonitorFormat::csv : MonitorFormat::jsonl;
             return true;
         }
         *error = "--format takes csv or jsonl";
         return false;
     }},
    {"--textfile", ValueRule::required, "=PATH", "write the metrics exposition to PATH once (atomically) and exit",
     [](LongOptions& o, std::string_view v, std::string* error) {
         return setPath(o.textfile, v, error, "--textfile");
     }},
    {"--serve-metrics", ValueRule::optional, "[=ADDRESS:PORT]", "serve the metrics over HTTP (loopback by default)",
     [](LongOptions& o, std::string_view v, std::string*) {
         o.metricsAddress = std::string(v);
         return o.serveMetrics = true;
     }},
    {"--metrics-tls-cert", ValueRule::required, "=PEM", "metrics endpoint: TLS certificate file",
     [](LongOptions& o, std::string_view v, std::string* error) {
         return setPath(o.metricsTlsCert, v, error, "--metrics-tls-cert");
     }},
    {"--metrics-tls-key", ValueRule::required, "=PEM", "metrics endpoint: TLS key file, readable by its owner only",
     [](LongOptions& o, std::string_view v, std::string* error) {
         return setPath(o.metricsTlsKey, v, error, "--metrics-tls-key");
     }},
    {"--metrics-auth-file", ValueRule::required, "=PATH", "metrics endpoint: basic authentication, user:bcrypt lines",
     [](LongOptions& o, std::string_view v, std::string* error) {
         return setPath(o.metricsAuthFile, v, error, "--metrics-auth-file");
     }},
    {"--root", ValueRule::required, "=DIR", "with the options above: read the machine from DIR instead of /",
     [](LongOptions& o, std::string_view v, std::string* error) { return setPath(o.root, v, error, "--root"); }},
    // Answered from the whole line before anything else; listed here so that they are not unknown.
    {kHelpOption, ValueRule::none, nullptr, nullptr, [](LongOptions&, std::string_view, std::string*) { return true; }},
    {kVersionOption, ValueRule::none, nullptr, nullptr,
     [](LongOptions&, std::string_view, std::string*) { return true; }},
});
static_assert(kLongOptions.size() == 13, "eleven two-dash options, then --help and --version");

const LongOption* findLongOption(std::string_view name) {
    for (const LongOption& option : kLongOptions)
        if (name == option.name) return &option;
    return nullptr;
}

// False with a message for an unknown name or a value where none belongs (or none where one must be).
bool applyLongOption(std::string_view argument, LongOptions& options, std::string* error) {
    const size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const LongOption* option = findLongOption(name);
    if (!option) {
        *error = "unknown option " + std::string(name) + " (--help lists the options)";
        return false;
    }
    const bool hasValue = equals != std::string_view::npos;
    if (hasValue && option->valueRule == ValueRule::none) {
        *error = std::string(name) + " takes no value";
        return false;
    }
    if (!hasValue && option->valueRule == ValueRule::required) {
        *error = std::string(name) + " needs a value: " + std::string(name) + option->value;
        return false;
    }
    return option->apply(options, hasValue ? argument.substr(equals + 1) : std::string_view{}, error);
}

}  // namespace

SplitCommandLine splitCommandLine(int argc, const char* const* argv) {
    SplitCommandLine split;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.rfind("--", 0) != 0) {
            split.otherArguments.emplace_back(argument);
            continue;
        }
        if (split.error.empty()) applyLongOption(argument, split.options, &split.error);
    }
    return split;
}

std::vector<OptionDescription> describedLongOptions() {
    std::vector<OptionDescription> rows;
    for (const LongOption& option : kLongOptions)
        if (option.description) rows.push_back({option.name, option.value, option.description});
    return rows;
}

size_t longOptionCount() { return describedLongOptions().size(); }
