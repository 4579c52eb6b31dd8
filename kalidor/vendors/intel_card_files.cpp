#include "kalidor/vendors/intel_card_files.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "kalidor/machine_snapshot.h"
#include "kalidor/platform/sysfs_files.h"
#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

namespace {

// i915 writes no labels: its channels are these.
struct UnlabelledChannel {
    const char* kind;
    const char* label;
};
constexpr UnlabelledChannel kUnlabelledChannels[] = {
    {"temp", "pkg"},
    {"in", "gt"},
    {"energy", "card"},
    {"power", "card"},
};
static_assert(std::size(kUnlabelledChannels) == 4);

// hwmon temperature labels and the sensor names the live sample uses for them.
struct TemperatureLabel {
    const char* label;
    const char* sensor;
};
constexpr TemperatureLabel kTemperatureLabels[] = {
    {"pkg", "package"},
    {"vram", "vram"},
};
static_assert(std::size(kTemperatureLabels) == 2);

constexpr std::string_view kLimitSuffixes[] = {"_max", "_rated_max"};  // PL1 first, then the default TDP

bool listed(const std::vector<std::string>& entries, const std::string& name) {
    return std::binary_search(entries.begin(), entries.end(), name);
}

std::string pathIfListed(const std::vector<std::string>& entries, const std::string& dir, const std::string& name) {
    return listed(entries, name) ? dir + "/" + name : std::string();
}

// One hwmon channel: "temp2" of "temp2_input".
struct Channel {
    std::string kind, number, label;
};

// The channel an "<kind><n>_input" file belongs to, with its label; nullopt for any other file.
std::optional<Channel> channelOf(const std::vector<std::string>& entries, const std::string& dir,
                                 const std::string& entry) {
    constexpr std::string_view kInput = "_input";
    if (entry.size() <= kInput.size() || entry.compare(entry.size() - kInput.size(), kInput.size(), kInput) != 0)
        return std::nullopt;
    const std::string channel = entry.substr(0, entry.size() - kInput.size());
    const size_t digits = channel.find_first_of("0123456789");
    if (digits == 0 || digits == std::string::npos) return std::nullopt;
    Channel c{channel.substr(0, digits), channel.substr(digits), {}};
    if (listed(entries, channel + "_label")) {
        c.label = readFirstLine(dir + "/" + channel + "_label").value_or("");
    } else {
        for (const UnlabelledChannel& row : kUnlabelledChannels)
            if (c.kind == row.kind) c.label = row.label;
    }
    return c;
}

const char* sensorNameOf(const std::string& label) {
    for (const TemperatureLabel& row : kTemperatureLabels)
        if (label == row.label) return row.sensor;
    return nullptr;
}

bool isRailName(const std::string& label) {
    for (const char* rail : kRailNames)
        if (label == rail) return true;
    return false;
}

void findHwmonFiles(const std::string& dir, IntelCardFiles& files) {
    const std::vector<std::string> entries = directoryEntries(dir);
    std::string packageEnergy;
    for (const std::string& entry : entries) {
        const auto channel = channelOf(entries, dir, entry);
        if (!channel) continue;
        const std::string path = dir + "/" + entry;
        if (channel->kind == "temp") {
            if (const char* sensor = sensorNameOf(channel->label)) files.temperatures.push_back({sensor, path});
        } else if (channel->kind == "in") {
            if (isRailName(channel->label)) files.voltages.push_back({channel->label, path});
        } else if (channel->kind == "fan") {
            files.fans.push_back(path);
        } else if (channel->kind == "energy") {
            if (channel->label == "card") files.energy = path;
            if (channel->label == "pkg") packageEnergy = path;
        }
    }
    if (files.energy.empty()) files.energy = packageEnergy;

    // Power channels have no input file here, only limits; the card's come before the package's.
    for (const char* owner : {"card", "pkg"}) {
        for (const std::string& entry : entries) {
            if (entry.rfind("power", 0) != 0 || entry.size() < 7 || entry.compare(entry.size() - 4, 4, "_max") != 0)
                continue;
            const std::string channel = entry.substr(0, entry.find('_'));
            std::string label;
            if (listed(entries, channel + "_label"))
                label = readFirstLine(dir + "/" + channel + "_label").value_or("");
            else
                label = "card";
            if (label != owner) continue;
            for (std::string_view suffix : kLimitSuffixes) {
                const std::string name = channel + std::string(suffix);
                if (listed(entries, name)) files.powerLimits.push_back(dir + "/" + name);
            }
            break;
        }
    }
}

// Reason files, each named after what it holds back: "throttle_reason_pl1" gives "pl1".
void findThrottleFiles(const std::string& dir, const std::string& prefix, const std::string& statusName,
                       IntelCardFiles& files) {
    const std::vector<std::string> entries = directoryEntries(dir);
    files.throttleStatus = pathIfListed(entries, dir, statusName);
    for (const std::string& entry : entries)
        if (entry != statusName && entry.rfind(prefix, 0) == 0 && entry.size() > prefix.size())
            files.throttleReasons.push_back({entry.substr(prefix.size()), dir + "/" + entry});
}

void findI915Files(const PciDevice& device, IntelCardFiles& files) {
    if (device.drmCard.empty()) return;
    const std::string card = device.directory + "/drm/" + device.drmCard;
    const std::vector<std::string> entries = directoryEntries(card);
    files.actualMhz = pathIfListed(entries, card, "gt_act_freq_mhz");
    files.requestedMhz = pathIfListed(entries, card, "gt_cur_freq_mhz");
    const std::string gt = card + "/gt/gt0";
    const std::vector<std::string> gtEntries = directoryEntries(gt);
    files.idleResidencyMs = pathIfListed(gtEntries, gt, "rc6_residency_ms");
    if (files.idleResidencyMs.empty()) {
        // Kernels before the per-GT directories keep the one GT's residency under the card.
        const std::string power = card + "/power";
        files.idleResidencyMs = pathIfListed(directoryEntries(power), power, "rc6_residency_ms");
    }
    if (!gtEntries.empty()) findThrottleFiles(gt, "throttle_reason_", "throttle_reason_status", files);
}

void findXeFiles(const PciDevice& device, IntelCardFiles& files) {
    const std::string gt = device.directory + "/tile0/gt0";
    const std::string freq = gt + "/freq0";
    const std::vector<std::string> entries = directoryEntries(freq);
    files.actualMhz = pathIfListed(entries, freq, "act_freq");
    files.requestedMhz = pathIfListed(entries, freq, "cur_freq");
    const std::string idle = gt + "/gtidle";
    files.idleResidencyMs = pathIfListed(directoryEntries(idle), idle, "idle_residency_ms");
    if (listed(entries, "throttle")) findThrottleFiles(freq + "/throttle", "reason_", "status", files);

    // Local memory per tile; integrated GPUs have none and no such file.
    for (const std::string& entry : directoryEntries(device.directory)) {
        if (entry.rfind("tile", 0) != 0) continue;
        const auto text = readSmallFile(device.directory + "/" + entry + "/physical_vram_size_bytes");
        const auto bytes = text ? parseSysfsUnsigned(firstLineOf(*text), uint64_t(1) << 44) : std::nullopt;
        if (bytes) files.vramBytes = files.vramBytes.value_or(0) + *bytes;
    }
}

}  // namespace

IntelCardFiles findIntelCardFiles(const PciDevice& device) {
    IntelCardFiles files;
    if (!device.hwmonDir.empty()) findHwmonFiles(device.hwmonDir, files);
    if (device.driver == "xe")
        findXeFiles(device, files);
    else
        findI915Files(device, files);
    return files;
}

}  // namespace Kalidornm
