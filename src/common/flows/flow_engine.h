#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "common/flows/carried_front.h"
#include "common/flows/flow_band.h"
#include "common/flows/flow_lattice.h"
#include "common/flows/flow_map.h"
#include "common/flows/tracing.h"
#include "flow.h"

namespace lset::detail {

/// A level set at the start and the maps of its steps (see quorbin::Flow2D).
template <class Point, std::size_t dimensions>
class FlowEngine {
 public:
    using Lattice = FlowLattice<Point, dimensions>;
    using Site = typename Lattice::Site;
    using Front = CarriedFront<Point, dimensions>;
    using Border = quorbin::FlowOptions::Border;

    FlowEngine(const Lattice& lattice, std::vector<double> start, Front front,
               typename Tracing<Point>::Velocity velocity, double time, const quorbin::FlowOptions& options)
        : lattice_(lattice),
          start_(std::move(start)),
          front_(std::move(front)),
          tracing_(std::move(velocity)),
          options_(options),
          smallest_(*std::min_element(lattice.h.begin(), lattice.h.end())),
          far_(kFar * *std::max_element(lattice.h.begin(), lattice.h.end())),
          time_(time) {}
    FlowEngine(const FlowEngine&) = delete;  // maps refer to its lattice
    void operator=(const FlowEngine&) = delete;

    const Lattice& lattice() const { return lattice_; }
    double time() const { return time_; }
    std::size_t steps() const { return maps_.size(); }
    std::size_t bytes() const {
        std::size_t sum = 0;
        for (const Step& step : maps_) sum += step.map->bytes();
        return sum;
    }

    bool advance(double end) {
        if (!std::isfinite(end) || end < time_)
            throw std::invalid_argument("advance: the time is not finite, or lies behind");
        const double begin = time_;
        const std::size_t known = maps_.size();
        const Front front = front_;
        const auto undo = [&] {
            maps_.resize(known);
            front_ = front;
            time_ = begin;
        };
        try {
            double dt = stepLength();
            while (time_ < end) {
                const double left = end - time_;
                // Two equal steps rather than a long one and a rest.
                const double step = dt >= left ? left : std::min(dt, 0.5 * left);
                const double error = tryStep(dt >= left ? end : time_ + step);
                if (error > options_.tolerance) {
                    dt = 0.5 * step;
                    if (!(time_ + dt > time_))
                        throw std::invalid_argument("the velocity is too rough to be followed");
                    continue;
                }
                if (error < 0.1 * options_.tolerance) dt = std::max(dt, 1.5 * step);
                constexpr int kParts = 1000;
                if (options_.progress &&
                    !options_.progress(static_cast<int>(kParts * ((time_ - begin) / (end - begin))),
                                       kParts)) {
                    undo();
                    return false;
                }
            }
        } catch (...) {
            undo();
            throw;
        }
        return true;
    }

    /// The start's value that has come to a place.
    double valueAt(const Point& place) const { return followed(place, maps_.size(), true); }

    /// The values on a lattice over the same place, whose spacings are this one's over whole numbers.
    void fill(const Lattice& lattice, double* values) const {
        if (maps_.empty()) {
            for (std::size_t i = 0; i < lattice.count(); ++i)
                values[i] = startAt(lattice.placeOf(lattice.siteOf(i)));
            return;
        }
        const FlowBand<Lattice> band(lattice_, front_.points);
        std::vector<bool> isNear(lattice_.count());
        for (const std::size_t i : band.points()) isNear[i] = true;
        const FlowMap<Lattice>& last = *maps_.back().map;
        for (std::size_t i = 0; i < lattice.count(); ++i) {
            const Point place = lattice.placeOf(lattice.siteOf(i));
            const std::size_t nearest = lattice_.indexOf(lattice_.nearestTo(place));
            values[i] = isNear[nearest] ? valueAt(place) : last.isInsideAt(place) ? -far_ : far_;
        }
    }

 private:
    struct Step {
        double from, to;
        int substeps;
        std::unique_ptr<FlowMap<Lattice>> map;
    };

    static constexpr double kFar = 8;     // the value beyond the band, in spacings
    static constexpr double kCells = 20;  // how far a first step goes

    double stepLength() const {
        std::vector<Point> velocities(front_.points.size());
        tracing_.velocities(time_, front_.points.data(), velocities.size(), velocities.data());
        double fastest = 0;
        for (const Point& v : velocities) fastest = std::max(fastest, dot(v, v));
        return fastest > 0 ? kCells * smallest_ / std::sqrt(fastest)
                           : std::numeric_limits<double>::infinity();
    }

    /// Goes on to a time, unless front points that the map takes back miss their places by more than the
    /// tolerance; returns by how much, in spacings.
    double tryStep(double to) {
        const int first = maps_.empty() ? 1 : std::max(1, maps_.back().substeps / 2);
        const int substeps =
            tracing_.substepsFor(front_.points, time_, to, 0.1 * options_.tolerance * smallest_, first);
        Front front = front_.moved(tracing_, time_, to, substeps, kReach * smallest_);
        Step step{time_, to, substeps, std::make_unique<FlowMap<Lattice>>(lattice_)};
        FlowBand<Lattice> band(lattice_, front.points);
        std::vector<Point> places;
        places.reserve(band.points().size());
        for (const std::size_t i : band.points()) places.push_back(lattice_.placeOf(lattice_.siteOf(i)));
        tracing_.move(places.data(), places.size(), to, time_, substeps);
        for (std::size_t k = 0; k < places.size(); ++k)
            step.map->set(lattice_.siteOf(band.points()[k]), places[k]);

        const double error = largestMiss(*step.map, front.points);
        if (error > options_.tolerance) return error;

        for (const std::size_t i : band.rim())
            band.setSide(i, followed(step.map->before(lattice_.siteOf(i)), maps_.size(), false) <= 0);
        if (band.points().empty()) {  // the interface has left the grid: all of it is on one side
            Point place = lattice_.placeOf(Site{});
            tracing_.move(&place, 1, to, time_, substeps);
            band.setSide(0, followed(place, maps_.size(), false) <= 0);
        }
        band.spread([&](std::size_t i, bool isInside) { step.map->setSide(i, isInside); });
        maps_.push_back(std::move(step));
        front_ = std::move(front);
        time_ = to;
        return error;
    }

    /// By the points that the step began with, which come first.
    double largestMiss(const FlowMap<Lattice>& map, const std::vector<Point>& moved) const {
        double largest = 0;
        for (std::size_t i = 0; i < front_.points.size(); ++i) {
            if (!lattice_.contains(moved[i])) continue;
            Point place = moved[i];
            if (!map.takeBack(place)) continue;
            const Point miss = place - front_.points[i];
            largest = std::max(largest, dot(miss, miss));
        }
        return std::sqrt(largest) / smallest_;
    }

    /// The start's value at the end of a way back through the first maps. Where a map does not reach, the way
    /// ends with the side there; or, if exactly is asked, it is traced.
    double followed(Point place, std::size_t maps, bool exactly) const {
        while (maps-- > 0) {
            if (!lattice_.contains(place)) {
                if (options_.border == Border::kOutside) return far_;
                place = lattice_.clamped(place);
            }
            const Step& step = maps_[maps];
            if (step.map->takeBack(place)) continue;
            if (!exactly) return step.map->isInsideAt(place) ? -far_ : far_;
            tracing_.move(&place, 1, step.to, step.from, step.substeps);
        }
        return startAt(place);
    }

    double startAt(const Point& place) const {
        if (!lattice_.contains(place) && options_.border == Border::kOutside) return far_;
        const auto block = lattice_.blockAt(lattice_.clamped(place));
        double sum = 0;
        const auto addRows = [&](Site site, double weight) {
            for (std::size_t j = 0; j < 4; ++j, ++site[1]) {
                const double* const row = &start_[lattice_.indexOf(site)];
                double inRow = 0;
                for (std::size_t i = 0; i < 4; ++i) inRow += block.weights[0][i] * row[i];
                sum += weight * block.weights[1][j] * inRow;
            }
        };
        if constexpr (dimensions == 2) {
            addRows(block.first, 1);
        } else {
            Site site = block.first;
            for (std::size_t k = 0; k < 4; ++k, ++site[2]) addRows(site, block.weights[2][k]);
        }
        return std::clamp(sum, -far_, far_);
    }

    static constexpr double kReach = 2;  // of front points from each other, in spacings

    const Lattice lattice_;
    const std::vector<double> start_;
    Front front_;
    const Tracing<Point> tracing_;
    const quorbin::FlowOptions options_;
    const double smallest_, far_;
    double time_;
    std::vector<Step> maps_;
};

}  // namespace lset::detail
