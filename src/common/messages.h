#pragma once

/// Every line that the library prints, as printf formats.
namespace lset::detail::messages {

constexpr char kAlreadyInHeap[] = "its already in heap\n";
constexpr char kUpdateOfAbsent[] = "problem in update, -1 index for %d,%f";
constexpr char kUpdateBeyondCount[] = "problem in update, node=(%d,%f), %d>=%d\n";
constexpr char kUpdateOfOther[] = "error in update %d!=%d";
constexpr char kHeapOrderRule[] = "-----------------------\n";
constexpr char kHeapOrderBroken[] = "heap property is not valid (%d,%f) < (%d,%f)\n";
constexpr char kPositionWrong[] = "[%d]=%d thinks its at %d not %d\n";
constexpr char kHappenedAt[] = "happened at: %s\n";
constexpr char kLastGoodCheck[] = "prevopis:%s\n";
constexpr char kHeapEntry[] = "(%d,%2.0f),";
constexpr char kAssertionFailed[] = "%s:%d: %s: Assertion `%s' failed.\n";

constexpr char kErroneousPoint[] = "erroneous point a=%f, b=%f\n";
constexpr char kLoadingBinary[] = "loading binary.";
constexpr char kRunOfNone[] = "%s:%d  error num is zero (i=%d, val=%d, top=%d)\n";
constexpr char kBandMade[] = "initted %d\n";

}  // namespace lset::detail::messages
