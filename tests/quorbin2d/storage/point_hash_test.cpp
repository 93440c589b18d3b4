#include <hash.h>

#include <gtest/gtest.h>

namespace {

TEST(PointHash, FindsOrAddsAndNeverMixesUpPointsOfOneBucket) {
    PointHash<double> hash(211);
    EXPECT_EQ(hash.find(3, -4), nullptr);
    EXPECT_EQ(hash(3, -4), 0.0);
    EXPECT_EQ(hash.size(), 1);
    hash(3, -4) = 2.0;
    hash(3 + 1024, -5) = 5.0;  // the same sum
    EXPECT_EQ(hash(3, -4), 2.0);
    EXPECT_EQ(*hash.find(1027, -5), 5.0);
    EXPECT_EQ(hash.size(), 2);

    PointHash<char> flags = 10;
    flags(-1, 0) = 7;  // 4294967295 mod 10
    EXPECT_EQ(flags.buckets[5].count, 1);
    EXPECT_EQ(flags.buckets[5][0].x, -1);
    EXPECT_EQ(PointHash<double>(0)(1, 1), 0.0);
}

TEST(PointHash, GrowsABucketBeforeItIsMoreThanHalfFull) {
    PointHash<double> hash(1);
    EXPECT_EQ(hash.buckets.count, 1);
    const auto& bucket = hash.buckets[0];
    EXPECT_EQ(bucket.capacity, 32);
    EXPECT_EQ(bucket.increment, 32);
    const int capacities[][2] = {{16, 32}, {17, 81}, {40, 81}, {41, 154}, {77, 154}, {78, 264}};
    int n = 0;
    for (const auto& [count, capacity] : capacities) {
        for (; n < count; ++n) hash(n, n) = n;
        EXPECT_EQ(bucket.capacity, capacity) << count;
    }
    for (int i = 0; i < n; ++i) EXPECT_EQ(bucket[i].value, i);
}

TEST(PointHash, IsCopiedDeeplyAndInOrder) {
    PointHash<double> one(7), other(401);
    for (int i = 0; i < 300; ++i) one(i * i % 1000, -i) = i;
    other(5, 5) = 5;
    other = one;
    ASSERT_EQ(other.bucketCount, 7);
    ASSERT_EQ(other.buckets.count, 7);
    for (int b = 0; b < 7; ++b) {
        ASSERT_EQ(other.buckets[b].count, one.buckets[b].count);
        for (int i = 0; i < one.buckets[b].count; ++i) {
            EXPECT_EQ(other.buckets[b][i].x, one.buckets[b][i].x);
            EXPECT_EQ(other.buckets[b][i].value, one.buckets[b][i].value);
        }
    }
    one(0, 0) = -1;
    EXPECT_EQ(other(0, 0), 0.0);
    other.clear();
    EXPECT_EQ(other.size(), 0);
    EXPECT_EQ(one.size(), 300);
}

}  // namespace
