#pragma once

#include <cstddef>
#include <vector>

namespace Vantalux_nsp {

// A plain ordered list: append, index, count, empty. Indexing beyond the end is the caller's fault, as with
// std::vector; at() answers null there instead.
template <typename T>
class vxLinkedList {
public:
    void push_back(const T& value) { m_items.push_back(value); }
    T& operator[](size_t index) { return m_items[index]; }
    const T& operator[](size_t index) const { return m_items[index]; }
    T* at(size_t index) { return index < m_items.size() ? &m_items[index] : nullptr; }
    size_t size() const { return m_items.size(); }
    void clear() { m_items.clear(); }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    std::vector<T> m_items;
};

}  // namespace Vantalux_nsp
