#include <QChar>
#include <QLabel>
#include <QPixmap>

#include "app/app_state.h"
#include "gpu_panel.h"
#include "kalidor/kalidor.h"
#include "vendor_logo.h"

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

PerfLevelSpan readPerfLevelSpan(Kalidornm::Kalidor& library, int gpu) {
    PerfLevelSpan span;
    const uint32_t levels = library.getGpuPerfLevelCount(gpu);
    for (uint32_t level = 0; level < levels; ++level) {
        uint32_t id = 0;
        float core = 0.0f, mem = 0.0f;
        if (!library.readGpuPerfLevel(gpu, level, &id, &core, &mem, nullptr, nullptr)) continue;
        span.read = true;
        if (id < span.lowestId) span.lowestId = id;
        if (core > span.topCore) span.topCore = core;
        if (mem > span.topMem) span.topMem = mem;
    }
    return span;
}

}  // namespace

QString temperatureText(float celsius) {
    if (!(celsius > 0.0f)) return QString();
    const double fahrenheit = double(celsius) * 1.8 + 32.0;
    return QString::asprintf("%.1f", double(celsius)) + QChar(0xB0) + QStringLiteral("C / ") +
           QString::asprintf("%.1f", fahrenheit) + QChar(0xB0) + QStringLiteral("F");
}

void GpuPanel::refreshGpuLive(int gpu) {
    if (gpu < 0 || uint32_t(gpu) >= m_state.gpuCount) return;
    uint32_t vendor = 0;
    m_library.getGpuPciIds(gpu, &vendor, nullptr, nullptr, nullptr);
    if (vendor != 0x10DE && vendor != 0x1002) {
        for (int id : {1012, 1015, 1013, 1137, 1140, 1129}) blankField(this, id);
        return;
    }
    const bool nvidia = vendor == 0x10DE;

    float base = 0.0f, baseMem = 0.0f, boost = 0.0f, usage = 0.0f, target = 0.0f;
    if (nvidia) {
        m_library.readGpuClockFrequencies(gpu, 1, &base, &baseMem);
        m_library.readGpuClockFrequencies(gpu, 2, &boost, nullptr);
        m_library.readGpuPowerUsage(gpu, &usage, nullptr);
        m_library.readGpuPowerTarget(gpu, &target, nullptr);
    }

    float percent = 0.0f, rpm = 0.0f;
    QString fan;
    if (m_library.readGpuFanSpeed(gpu, &percent, &rpm)) {
        if (percent > 0.0f && rpm > 0.0f)
            fan = QString::asprintf("%d%% / %d RPM", int(percent), int(rpm));
        else if (percent > 0.0f)
            fan = QString::asprintf("%d%%", int(percent));
        else if (rpm > 0.0f)
            fan = QString::asprintf("%d RPM", int(rpm));
    }
    showLiveOrBlank(this, 1012, fan);

    float load = 0.0f;
    showLiveOrBlank(this, 1013,
                    m_library.readGpuLoad(gpu, &load, nullptr) ? QString::asprintf("%.1f%%", double(load)) : QString());

    // A clock field that nothing could be read for stays empty rather than showing zeros.
    uint32_t pstate = uint32_t(-1);
    float core = 0.0f, mem = 0.0f, volts = 0.0f;
    const bool clocksRead = m_library.readGpuCurrentClocks(gpu, &pstate, &core, &mem, nullptr, &volts);
    const PerfLevelSpan span = readPerfLevelSpan(m_library, gpu);
    QString current, highest, power;
    if (nvidia) {
        float currentCore = 0.0f, currentMem = 0.0f;
        m_library.readGpuClockFrequencies(gpu, 0, &currentCore, &currentMem);
        if (currentCore > 0.0f)
            current = QString::asprintf("core: %d MHz, mem: %d MHz", int(currentCore), int(currentMem));
        else if (clocksRead)
            current = QString::asprintf("Pstate %d - GPU core: %d MHz, mem: %d MHz", int(pstate), int(core), int(mem));
        if (base > 0.0f && boost > 0.0f)
            highest = QString::asprintf("base: %d MHz, boost: %d MHz, mem: %d MHz", int(base), int(boost), int(baseMem));
        else if (span.read)
            highest = QString::asprintf("P%d - core: %d MHz, mem: %d MHz", int(span.lowestId), int(span.topCore),
                                        int(span.topMem));
        volts = 0.0f;
        m_library.readGpuVoltage(gpu, &volts);
        if (usage > 0.0f && target > 0.0f)
            power = QString::asprintf("current: %.1f %% TDP, target: %.1f %% TDP", double(usage), double(target));
    } else {
        if (clocksRead) current = QString::asprintf("core: %d MHz, mem: %d MHz", int(core), int(mem));
        if (span.read)
            highest = QString::asprintf("core: %d MHz, mem: %d MHz", int(span.topCore), int(span.topMem));
        int32_t limit = 0, standard = 0;
        if (m_library.readGpuPowerControl(gpu, &limit, &standard, nullptr, nullptr))
            power = QString::asprintf("PowerTune - cur: %d%%, default: %d%%", limit, standard);
    }
    showLiveOrBlank(this, 1137, current);
    showLiveOrBlank(this, 1140, highest);
    showLiveOrBlank(this, 1129, volts > 0.0f ? QString::asprintf("%.3fV", double(volts)) : QString());
    showLiveOrBlank(this, 1014, power);
}

void GpuPanel::refreshTemperature() {
    const int gpu = m_state.selectedGpu;
    float core = 0.0f;
    if (!m_library.readGpuTemperatures(gpu, &core, nullptr, nullptr, nullptr)) core = 0.0f;
    setFieldText(this, 1015, temperatureText(core));
    setControlEnabled(this, 1015, core > 0.0f);
}

void GpuPanel::refreshOnTick() {
    const int gpu = m_state.selectedGpu;
    if (m_library.isGpuSuspended(gpu)) {
        for (int id : kGpuLiveFields) blankField(this, id);
        return;
    }
    if (m_state.temperatureRefreshEnabled) refreshTemperature();
    refreshGpuLive(gpu);
}

void GpuPanel::_showVendorLogo() {
    uint32_t vendor = 0;
    if (!m_library.getGpuPciIds(m_state.selectedGpu, &vendor, nullptr, nullptr, nullptr) &&
        m_library.hasDisplayDevice())
        vendor = m_library.getPrimaryVendorId();
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
