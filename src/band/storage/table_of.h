#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "band/storage/bucket_count.h"
#include "band/storage/workspace.h"

namespace lset::detail {

/// A table with these entries; throws std::invalid_argument, naming the point, if one is there twice.
template <std::size_t dimensions>
typename BandStorage<dimensions>::Hash tableOf(
    const std::vector<typename BandStorage<dimensions>::Entry>& entries) {
    const auto count = static_cast<long long>(entries.size());
    typename BandStorage<dimensions>::Hash table(bucketCountAbove(count, kBucketCountsOfVolumes));
    const auto add = [&table](double value, auto... c) {
        if (table.find(c...) != nullptr) {
            std::string point;
            ((point += (point.empty() ? "" : ", ") + std::to_string(c)), ...);
            throw std::invalid_argument("the point (" + point + ") is there twice");
        }
        table.add(c...) = value;
    };
    for (const auto& entry : entries)
        std::apply([&](auto... c) { add(entry.value, c...); }, BandStorage<dimensions>::pointOf(entry));
    return table;
}

}  // namespace lset::detail
