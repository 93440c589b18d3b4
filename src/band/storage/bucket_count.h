#pragma once

namespace lset::detail {

/// Bucket counts of bands made from grids; those of two dimensions use the first fifteen.
constexpr int kBucketCounts[] = {211,   401,   997,    1097,   1597,   1999,    3001,    3989,
                                 4999,  6007,  7079,   8011,   9001,   9973,    11987,   24001,
                                 48017, 96001, 192007, 384001, 768013, 1536011, 3072001, 6144001};
constexpr int kBucketCountsOfPictures = 15, kBucketCountsOfVolumes = 24;

/// The first of so many counts that lies above a number, or the last.
inline int bucketCountAbove(long long number, int counts) {
    for (int i = 0; i < counts; ++i)
        if (number < kBucketCounts[i]) return kBucketCounts[i];
    return kBucketCounts[counts - 1];
}

}  // namespace lset::detail
