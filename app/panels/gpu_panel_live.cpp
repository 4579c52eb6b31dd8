#include <QChar>
#include <QLabel>
#include <QPixmap>

#include "app/app_state.h"
#include "app/panels/gpu_panel.h"
#include "kalidor/kalidor.h"
#include "app/panels/vendor_logo.h"

namespace panels {

namespace {

// A value enables its field and label; no value empties and greys both.
void showLiveOrBlank(QWidget* panel, int id, const QString& value) {
    setFieldText(panel, id, value);
    setControlEnabled(panel, id, !value.isEmpty());
}

// Level figures of the driver's performance table: the lowest level id and the highest clocks.
struct PerfLevelSpan {
    bool read = false;  // at least one level could be read
    uint32_t lowestId = 100;
    float topCore = 0.0f, topMem = 0.0f;
};

PerfLevelSpan perfLevelSpanOf(const Kalidornm::GpuSnapshot& g) {
    PerfLevelSpan span;
    for (const Kalidornm::PerfLevelFacts& level : g.perfLevels) {
        span.read = true;
        if (level.id < span.lowestId) span.lowestId = level.id;
        if (level.gpuClockMhz > span.topCore) span.topCore = level.gpuClockMhz;
        if (level.memClockMhz > span.topMem) span.topMem = level.memClockMhz;
    }
    return span;
}

// The vendors whose drivers give live values.
bool hasLiveValues(const Kalidornm::GpuSnapshot& gpu) {
    return gpu.vendorId == 0x10DE || gpu.vendorId == 0x1002 || gpu.vendorId == 0x8086;
}

}  // namespace

QString temperatureText(float celsius) {
    if (!(celsius > 0.0f)) return QString();
    const double fahrenheit = double(celsius) * 1.8 + 32.0;
    return QString::asprintf("%.1f", double(celsius)) + QChar(0xB0) + QStringLiteral("C / ") +
           QString::asprintf("%.1f", fahrenheit) + QChar(0xB0) + QStringLiteral("F");
}

// Reads the library's snapshot; its live part is that of the last refresh.
void GpuPanel::refreshGpuLive(int gpu) {
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    if (gpu < 0 || uint32_t(gpu) >= m_state.gpuCount || size_t(gpu) >= machine.gpus.size()) return;
    const Kalidornm::GpuSnapshot& g = machine.gpus[size_t(gpu)];
    const Kalidornm::LiveSample& live = g.live;
    if (!hasLiveValues(g)) {
        for (int id : {1012, 1015, 1013, 1137, 1140, 1129}) blankField(this, id);
        return;
    }
    const bool nvidia = g.vendorId == 0x10DE, intel = g.vendorId == 0x8086;

    QString fan;
    if (live.fanRead) {
        const float percent = live.fanPercent.value_or(0.0f), rpm = live.fanRpm.value_or(0.0f);
        if (percent > 0.0f && rpm > 0.0f)
            fan = QString::asprintf("%d%% / %d RPM", int(percent), int(rpm));
        else if (percent > 0.0f)
            fan = QString::asprintf("%d%%", int(percent));
        else if (rpm > 0.0f)
            fan = QString::asprintf("%d RPM", int(rpm));
    }
    showLiveOrBlank(this, 1012, fan);

    showLiveOrBlank(this, 1013,
                    live.loadRead ? QString::asprintf("%.1f%%", double(live.gpuLoadPercent.value_or(0.0f))) : QString());

    // A clock field that nothing could be read for stays empty rather than showing zeros.
    const bool clocksRead = live.currentPstate.has_value();
    const float core = live.currentGpuClockMhz.value_or(0.0f), mem = live.currentMemClockMhz.value_or(0.0f);
    float volts = live.currentVolts.value_or(0.0f);
    const PerfLevelSpan span = perfLevelSpanOf(g);
    QString current, highest, power;
    if (nvidia) {
        const float base = g.nvidia.baseClockMhz.value_or(0.0f), baseMem = g.nvidia.memoryClockMhz.value_or(0.0f);
        const float boost = g.nvidia.boostClockMhz.value_or(0.0f);
        const float usage = live.powerUsagePercent.value_or(0.0f), target = g.nvidia.powerTargetPercent.value_or(0.0f);
        if (core > 0.0f)
            current = QString::asprintf("core: %d MHz, mem: %d MHz", int(core), int(mem));
        else if (clocksRead)
            current = QString::asprintf("Pstate %d - GPU core: %d MHz, mem: %d MHz", int(*live.currentPstate),
                                        int(core), int(mem));
        if (base > 0.0f && boost > 0.0f)
            highest = QString::asprintf("base: %d MHz, boost: %d MHz, mem: %d MHz", int(base), int(boost), int(baseMem));
        else if (span.read)
            highest = QString::asprintf("P%d - core: %d MHz, mem: %d MHz", int(span.lowestId), int(span.topCore),
                                        int(span.topMem));
        volts = 0.0f;  // the NVIDIA driver reports no voltage
        if (usage > 0.0f && target > 0.0f)
            power = QString::asprintf("current: %.1f %% TDP, target: %.1f %% TDP", double(usage), double(target));
    } else if (intel) {
        // The driver gives the GT's clock only, and power in watts rather than a share of a target.
        if (live.currentGpuClockMhz) current = QString::asprintf("core: %d MHz", int(*live.currentGpuClockMhz));
        if (live.powerWatts) power = QString::asprintf("%.1f W", double(*live.powerWatts));
    } else {
        if (clocksRead) current = QString::asprintf("core: %d MHz, mem: %d MHz", int(core), int(mem));
        if (span.read)
            highest = QString::asprintf("core: %d MHz, mem: %d MHz", int(span.topCore), int(span.topMem));
        if (live.powerLimitPercent)
            power = QString::asprintf("PowerTune - cur: %d%%, default: %d%%", *live.powerLimitPercent,
                                      live.defaultPowerLimitPercent.value_or(0));
    }
    showLiveOrBlank(this, 1137, current);
    showLiveOrBlank(this, 1140, highest);
    showLiveOrBlank(this, 1129, volts > 0.0f ? QString::asprintf("%.3fV", double(volts)) : QString());
    showLiveOrBlank(this, 1014, power);
}

void GpuPanel::refreshTemperature() {
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    const size_t gpu = size_t(m_state.selectedGpu);
    const float core = gpu < machine.gpus.size() ? machine.gpus[gpu].live.coreTemperatureC.value_or(0.0f) : 0.0f;
    setFieldText(this, 1015, temperatureText(core));
    setControlEnabled(this, 1015, core > 0.0f);
}

// One refresh of the library's live samples per tick, then the fields of the selected GPU from it.
void GpuPanel::refreshOnTick() {
    m_library.refreshLiveSample();
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    const size_t gpu = size_t(m_state.selectedGpu);
    if (gpu < machine.gpus.size() && machine.gpus[gpu].live.suspended) {
        for (int id : kGpuLiveFields) blankField(this, id);
        return;
    }
    if (m_state.temperatureRefreshEnabled) refreshTemperature();
    refreshGpuLive(m_state.selectedGpu);
}

void GpuPanel::_showVendorLogo() {
    const Kalidornm::MachineSnapshot& machine = m_library.snapshot();
    const size_t selected = size_t(m_state.selectedGpu);
    uint32_t vendor = 0;
    if (m_state.selectedGpu >= 0 && selected < machine.gpus.size())
        vendor = machine.gpus[selected].vendorId;
    else if (machine.hasDisplayDevice)
        vendor = machine.primary.vendorId;
    m_logo->setPixmap(vendorLogo(vendor));
}

void refreshOpenGlMemory(QWidget* openglPanel, Kalidornm::Kalidor& library) {
    if (!openglPanel) return;
    int32_t totalMb = 0, loadMb = 0;
    int32_t totalKb = 0, freeKb = 0;
    if (library.readGlNvxMemory(&totalKb, &freeKb)) {
        totalMb = totalKb / 1024;
        loadMb = totalMb - freeKb / 1024;
    } else if (library.isExtensionSupported("GL_ATI_meminfo")) {
        totalMb = library.readGlAtiTotalMemoryKb() / 1024;
        loadMb = library.readGlAtiUsedMemoryKb() / 1024;
    } else {
        return;
    }
    QString line;
    if (totalMb < 1)
        line = QStringLiteral("Total GPU memory: N/A - GPU memory load: N/A");
    else if (loadMb < 1)
        line = QString::asprintf("Total GPU memory: %dMB - GPU memory load: N/A", totalMb);
    else
        line = QString::asprintf("Total GPU memory: %dMB - GPU memory load: %dMB", totalMb, loadMb);
    setFieldText(openglPanel, 1032, line);
    if (auto* caption = findControl<CaptionBox>(openglPanel, 1277)) caption->setCaption(QStringLiteral("OpenGL memory"));
}

}  // namespace panels
