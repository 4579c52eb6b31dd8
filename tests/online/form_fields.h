#pragma once

#include <string>
#include <utility>
#include <vector>

// A submission body split into its items, in order, values as they stand (not decoded).
namespace online_test {

struct FormFields {
    std::vector<std::pair<std::string, std::string>> items;

    size_t count(const std::string& name) const {
        size_t n = 0;
        for (const auto& item : items) n += item.first == name;
        return n;
    }
    bool has(const std::string& name) const { return count(name) > 0; }
    // The first value of `name`; empty when there is none.
    std::string get(const std::string& name) const {
        for (const auto& item : items)
            if (item.first == name) return item.second;
        return {};
    }
};

inline FormFields splitForm(const std::string& body) {
    FormFields fields;
    size_t start = 0;
    while (start <= body.size() && !body.empty()) {
        size_t end = body.find('&', start);
        if (end == std::string::npos) end = body.size();
        const std::string item = body.substr(start, end - start);
        const size_t equals = item.find('=');
        if (equals == std::string::npos)
            fields.items.emplace_back(item, "");
        else
            fields.items.emplace_back(item.substr(0, equals), item.substr(equals + 1));
        start = end + 1;
    }
    return fields;
}

}  // namespace online_test
