#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace lset::detail {

/// What a point knows of the interface: its side, and the number of the nearest foot found so far. At first
/// it has no foot, and takes its side from that.
class Nearest {
 public:
    static constexpr std::uint32_t kNone = (1U << 28) - 1;  // there are fewer feet

    /// A point that has no foot.
    void reset(bool isOutside) { bits_ = kNone | (isOutside ? kOutsideBit : 0); }
    /// A point beside the interface, which keeps its own foot.
    void fix(bool isOutside, std::uint32_t foot) { bits_ = foot | kFixedBit | (isOutside ? kOutsideBit : 0); }
    /// Takes another foot; the rest stays.
    void take(std::uint32_t foot, bool isOutside) {
        bits_ = foot | (bits_ & ~kNone);
        if (isFree()) bits_ = isOutside ? bits_ | kOutsideBit : bits_ & ~kOutsideBit;
    }

    /// Whether a foot of this side is one for the point.
    bool accepts(bool isOutside) const { return !isFixed() && (isFree() || this->isOutside() == isOutside); }

    bool isOutside() const { return (bits_ & kOutsideBit) != 0; }
    bool isFixed() const { return (bits_ & kFixedBit) != 0; }
    bool isFree() const { return (bits_ & kFreeBit) != 0; }
    std::uint32_t foot() const { return bits_ & kNone; }

    /// A distance, signed as its side. 0 is inside, so an outside point is beyond it by the
    /// least that can be told.
    static double signedDistance(bool isOutside, double distance) {
        return isOutside ? std::max(distance, std::numeric_limits<double>::min()) : -distance;
    }

    /// Whether the point is about to pass its foot on.
    bool isWaiting() const { return (bits_ & kWaitingBit) != 0; }
    void setWaiting(bool waiting) { bits_ = waiting ? bits_ | kWaitingBit : bits_ & ~kWaitingBit; }

 private:
    static constexpr std::uint32_t kWaitingBit = 1U << 31, kOutsideBit = 1U << 30, kFixedBit = 1U << 29,
                                   kFreeBit = 1U << 28;

    std::uint32_t bits_ = kNone | kFreeBit;
};

}  // namespace lset::detail
