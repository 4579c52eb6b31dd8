#include "app/panels/web_links.h"

#include <cstring>
#include <iterator>

namespace panels {

namespace {

#include "app/panels/web_link_tables.inc"

// One more row than the tables list: the terminator.
static_assert(std::size(kNvidiaDriverLinks) == 5 + 1 && std::size(kNvidiaReviewLinks) == 167 + 1);
static_assert(std::size(kAmdDriverLinks) == 3 + 1 && std::size(kAmdReviewLinks) == 171 + 1);
static_assert(std::size(kS3DriverLinks) == 2 + 1 && std::size(kS3ReviewLinks) == 3 + 1);
static_assert(std::size(kOtherDriverLinks) == 1 + 1 && std::size(kOtherReviewLinks) == 1 + 1);

}  // namespace

WebLinkTables webLinkTablesFor(int32_t primaryVendorKind) {
    switch (primaryVendorKind) {
        case 1: return {"NVIDIA graphics cards news and reviews:", kNvidiaDriverLinks, kNvidiaReviewLinks};
        case 2: return {"AMD/ATI graphics cards news and reviews:", kAmdDriverLinks, kAmdReviewLinks};
        case 3: return {"S3 Graphics video cards news and reviews:", kS3DriverLinks, kS3ReviewLinks};
        default: return {"Graphics cards news and reviews:", kOtherDriverLinks, kOtherReviewLinks};
    }
}

std::vector<const ReviewLinkRow*> listedReviewRows(const ReviewLinkRow* table, const char* cardName,
                                                   const char* renderer) {
    std::vector<const ReviewLinkRow*> rows;
    if (!table) return rows;
    const char* haystack = (cardName && *cardName) ? cardName : (renderer ? renderer : "");
    for (const ReviewLinkRow* row = table; row->key; ++row)
        if (std::strstr(haystack, row->key)) rows.push_back(row);
    return rows;
}

}  // namespace panels
