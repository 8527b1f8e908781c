#pragma once

#include <QtGlobal>
#include <algorithm>
#include <vector>

namespace vantor {

/// Sorts rows, which count from 1, by their keys; rows of the same key stay as they are.
template <class KeyOf>
void SortByKey(std::vector<int>& rows, Qt::SortOrder order, KeyOf keyOf) {
    std::vector<decltype(keyOf(0))> keys;
    keys.reserve(rows.size());
    for (const int row : rows) keys.push_back(keyOf(row));
    const auto key = [&](int row) -> const auto& { return keys[static_cast<std::size_t>(row - 1)]; };
    if (order == Qt::AscendingOrder)
        std::stable_sort(rows.begin(), rows.end(), [&](int left, int right) { return key(left) < key(right); });
    else
        std::stable_sort(rows.begin(), rows.end(), [&](int left, int right) { return key(right) < key(left); });
}

}  // namespace vantor
