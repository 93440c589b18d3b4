#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "common/distance/closest_feet.h"
#include "common/distance/dense_lattice.h"
#include "common/distance/foot_finder.h"
#include "common/distance/front_rows.h"
#include "common/distance/reinitialize_checks.h"
#include "common/storage/dense_traits.h"
#include "common/storage/unchanged.h"
#include "common/watch.h"

namespace lset::detail {

/// Makes the values of a dense grid the signed distance to the zero level (see quorbin::reinitialize).
template <std::size_t dimensions>
class DenseReinitialization {
 public:
    using Lattice = DenseLattice<dimensions>;
    using Site = typename Lattice::Site;
    using Sizes = std::array<int, dimensions>;

    DenseReinitialization(double* values, const Sizes& sizes, const Vector<dimensions>& h,
                          const Stretch& stretch)
        : values_(values),
          sizes_(sizes),
          h_(h),
          stretch_(stretch),
          nearest_(filled(count(), Nearest(), stretch.part(0, 0.05))),
          lattice_(values, nearest_.data(), sizes),
          closest_(lattice_, lists_, h) {}

    /// Overwrites the values at the end, each row after before.keep(its first value, how many).
    template <class Before>
    void run(OldValues old, Before& before) {
        findFront();
        if (feet_.empty()) throwNoInterface();
        Stretch spreading = stretch_.part(0.2, 0.7);
        spreading.expect(2 * nearest_.size());
        closest_.spread(std::numeric_limits<double>::infinity(), spreading);
        setDistances(old, before);
    }

 private:
    std::size_t count() const {
        std::size_t points = 1;
        for (const int size : sizes_) points *= static_cast<std::size_t>(size);
        return points;
    }

    /// visit(site of its first point) for each row.
    template <class Visit>
    void forEachRow(const Visit& visit) const {
        Site site{{}, 0};
        for (; static_cast<std::size_t>(site.i) < nearest_.size(); site.i += sizes_[0]) {
            visit(site);
            for (std::size_t axis = 1; axis < dimensions; ++axis) {
                if (++site.at[axis] < sizes_[axis]) break;
                site.at[axis] = 0;
            }
        }
    }

    void findFront() {
        FootFinder<Lattice> finder(lattice_, h_);
        FrontRows<dimensions> rows(values_, sizes_);
        Stretch rest = stretch_.part(0.05, 0.2);
        rest.expect(nearest_.size());
        forEachRow([&](const Site& row) {
            const std::size_t feetBefore = feet_.size();
            rows.mark(row.at, row.i);
            Site site = row;
            for (; site.at[0] < sizes_[0]; ++site.at[0], ++site.i) {
                const bool isOutside = !rows.isInside(site.at[0]);
                lattice_.nearest(site).reset(isOutside);
                if (!rows.isFront(site.at[0])) continue;
                const double value = lattice_.value(site);
                AxisCrossings<dimensions> crossings;
                lattice_.forEachBeside(site, [&](const Site& beside, std::size_t axis, int step) {
                    crossings.look(value, lattice_.value(beside), axis, step, h_[axis]);
                });
                checkFootCount(feet_.size());
                feet_.emplace_back();
                ownDistances_.push_back(finder.find(site.at, value, crossings, feet_.back()));
                closest_.start(site, isOutside, feet_.back().at);
            }
            constexpr std::size_t kStepsOfAFoot = 32;
            rest.step(static_cast<std::size_t>(sizes_[0]) + kStepsOfAFoot * (feet_.size() - feetBefore));
        });
    }

    template <class Before>
    void setDistances(OldValues old, Before& before) {
        Stretch rest = stretch_.part(0.7, 1);
        rest.expect(nearest_.size());
        forEachRow([&](const Site& row) {
            before.keep(values_ + row.i, static_cast<std::size_t>(sizes_[0]));
            Vector<dimensions> world;
            for (std::size_t axis = 1; axis < dimensions; ++axis) world[axis] = h_[axis] * row.at[axis];
            for (int x = 0; x < sizes_[0]; ++x) {
                world[0] = h_[0] * x;
                const Nearest nearest = nearest_[static_cast<std::size_t>(row.i + x)];
                const std::uint32_t foot = nearest.foot();
                double& value = values_[row.i + x];
                const double known =
                    old == OldValues::kTrusted ? value : std::numeric_limits<double>::quiet_NaN();
                const double distance =
                    nearest.isFixed() ? ownDistances_[foot] : distanceFrom(feet_[foot], world, known);
                value = Nearest::signedDistance(nearest.isOutside(), distance);
            }
            rest.step(static_cast<std::size_t>(sizes_[0]));
        });
    }

    double* values_;
    Sizes sizes_;
    Vector<dimensions> h_;
    Stretch stretch_;
    std::vector<Nearest> nearest_;
    Lattice lattice_;
    SpreadingLists<typename Lattice::Place, dimensions> lists_;
    ClosestFeet<Lattice> closest_;
    std::vector<Foot<dimensions>> feet_;
    std::vector<double> ownDistances_;  // of the points beside the interface, by foot
};

template <class Grid, class Before>
void reinitializeDense(Grid& grid, OldValues old, const Stretch& stretch, Before& before) {
    using Traits = DenseTraits<Grid>;
    const auto sizes = Traits::sizes(grid);
    const auto h = Traits::spacings(grid);
    checkSpacings<Traits::dimensions>(h);
    if (std::find(sizes.begin(), sizes.end(), 0) != sizes.end()) throwNoInterface();
    DenseReinitialization<Traits::dimensions>(grid.data(), sizes, h, stretch).run(old, before);
}

/// See quorbin::reinitialize.
template <class Grid>
bool reinitializeUnlessEnded(Grid& grid, const quorbin::Progress& progress) {
    ValuesBefore before(grid.data(), progress ? pointCount(grid) : 0);
    const bool isDone = isDoneToTheEnd(
        progress, [&](const Stretch& whole) { reinitializeDense(grid, OldValues::kTrusted, whole, before); });
    if (isDone) before.forget();
    return isDone;
}

}  // namespace lset::detail
