#pragma once

namespace lset::detail {

/// What operations that are no members of bands need of them.
struct BandAccess {
    template <class Band>
    static auto& work(const Band& band) {
        return band.work();
    }
    template <class Band>
    static auto& values(Band& band) {
        return band.values_;
    }
};

}  // namespace lset::detail
