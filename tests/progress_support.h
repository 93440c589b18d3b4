#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include <gtest/gtest.h>
#include <quorbin.h>

using Bits = std::vector<std::uint64_t>;

/// A long operation: its result as bits, or nothing if progress has ended it. It leaves its input as it was
/// whether it is ended or not; what works in place does so on a copy, and checks that.
struct LongOperation {
    const char* name;
    std::function<std::optional<Bits>(const quorbin::Progress&)> run;
};

/// Ends the operation at its first, middle and last report, and lets it go to its end: then the result is the
/// one that it has without progress. inputs() gives the bits of all inputs.
template <class Inputs>
void expectEndedAndWatched(const LongOperation& operation, Inputs inputs) {
    const Bits before = inputs();
    const std::optional<Bits> plain = operation.run({});
    ASSERT_TRUE(plain.has_value()) << operation.name;
    int reports = 0, last = 0, parts = 0;
    const std::optional<Bits> watched = operation.run([&](int done, int all) {
        EXPECT_TRUE(last <= done && done <= all && (parts == 0 || all == parts)) << operation.name;
        ++reports;
        last = done;
        parts = all;
        return true;
    });
    EXPECT_EQ(watched, plain) << operation.name;
    EXPECT_GE(reports, 3) << operation.name;
    EXPECT_GT(last, 0) << operation.name;
    for (const int end : {1, (reports + 1) / 2, reports}) {
        int told = 0;
        EXPECT_FALSE(operation.run([&](int, int) { return ++told < end; }).has_value()) << operation.name;
        EXPECT_EQ(told, end) << operation.name;
        told = 0;
        EXPECT_THROW(operation.run([&](int, int) { return ++told < end ? true : throw 1; }), int);
    }
    EXPECT_EQ(inputs(), before) << operation.name;
}

/// The bits of a result that is plain numbers throughout.
template <class T>
Bits bitsOfNumbers(const T* first, std::size_t count) {
    static_assert(sizeof(T) % sizeof(std::uint64_t) == 0);
    const auto* const bits = reinterpret_cast<const std::uint64_t*>(first);
    return Bits(bits, bits + count * sizeof(T) / sizeof(std::uint64_t));
}
