#pragma once

#include <cstdint>
#include <vector>

// Web links of the tools panel, which the report prints too: driver download pages and review pages, one pair
// of tables per primary vendor kind. The tables live in program data for the whole run.

// Shown nowhere but in the report. A table ends with a row whose title is null.
struct DriverLinkRow {
    const char* title;
    const char* url;
};

// `key` is a piece of a model name; `title` is what the review combo shows. A table ends with a null key.
struct ReviewLinkRow {
    const char* key;
    const char* url;
    const char* title;
};

namespace panels {

// The program's own web site, without a trailing slash.
inline constexpr const char* kWebHost = "https://lumenscope.example.org";

struct WebLinkTables {
    const char* reviewsLabel;  // text of the label above the review combo
    const DriverLinkRow* drivers;
    const ReviewLinkRow* reviews;
};

// The pair for a primary vendor kind: 1 NVIDIA, 2 AMD, 3 S3, anything else the generic pair.
WebLinkTables webLinkTablesFor(int32_t primaryVendorKind);

// The review rows whose key occurs, case-sensitively, in `cardName`, or in `renderer` when `cardName` is empty;
// in table order, doubles kept. Null texts count as empty.
std::vector<const ReviewLinkRow*> listedReviewRows(const ReviewLinkRow* table, const char* cardName,
                                                   const char* renderer);

}  // namespace panels
