#include "app/panels/vendor_logo.h"

#include <QPixmapCache>

// The pictures are compiled into this static library; the linker keeps them only when someone asks by name.
static void initArtworkResources() { Q_INIT_RESOURCE(artwork); }

namespace panels {

namespace {

QPixmap cachedPixmap(const QString& resource) {
    static const bool registered = (initArtworkResources(), true);
    (void)registered;
    QPixmap pixmap;
    if (!QPixmapCache::find(resource, &pixmap)) {
        pixmap.load(resource);
        QPixmapCache::insert(resource, pixmap);
    }
    return pixmap;
}

}  // namespace

QPixmap vendorLogo(uint32_t pciVendor) {
    switch (pciVendor) {
        case 0x10DE: return cachedPixmap(QStringLiteral(":/lumenscope/logo_nvidia.png"));
        case 0x1002: return cachedPixmap(QStringLiteral(":/lumenscope/logo_amd.png"));
        case 0x8086: return cachedPixmap(QStringLiteral(":/lumenscope/logo_intel.png"));
        case 0x5333: return cachedPixmap(QStringLiteral(":/lumenscope/logo_s3.png"));
        default: return cachedPixmap(QStringLiteral(":/lumenscope/logo_other.png"));
    }
}

QPixmap applicationIcon() { return cachedPixmap(QStringLiteral(":/lumenscope/lumenscope.png")); }

}  // namespace panels
