#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "common/watch.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/extraction/segment_distance.h"

using namespace lset::detail;

namespace {

/// For each grid point the nearest segment known so far and the squared distance to it.
class NearestSegments {
 public:
    NearestSegments(int width, int height, const Stretch& stretch)
        : width_(width),
          height_(height),
          squared_(filled(points(), 2.0 * static_cast<double>(points()), stretch.part(0, 0.7))),
          nearest_(filled(points(), int{kNone}, stretch.part(0.7, 1))) {}

    /// Adds the segments of a cell and measures its corners against each.
    template <class Reader>
    void addCell(const Reader& field, int x, int y, int caseOfCell) {
        const CellCrossings<Reader> crossings(field, x, y);
        forEachSegment(caseOfCell, [&](int from, int to) {
            const brin::Vec2<double> start = crossings.on(from);
            const brin::Vec2<double> end = crossings.on(to);
            segments_.emplace_back(start, end);
            const auto index = static_cast<int>(segments_.size() - 1);
            for (const auto& [cx, cy] : {std::pair{x, y}, {x + 1, y}, {x, y + 1}, {x + 1, y + 1}})
                offer(cx, cy, index);
        });
    }

    template <class EndRow>
    void sweep(EndRow endRow) {
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                if (x > 0) offer(x, y, nearest_[at(x - 1, y)]);
                if (y > 0) offer(x, y, nearest_[at(x, y - 1)]);
            }
            endRow();
        }
        for (int y = height_ - 1; y >= 0; --y) {
            for (int x = width_ - 1; x >= 0; --x) {
                if (x < width_ - 1) offer(x, y, nearest_[at(x + 1, y)]);
                if (y < height_ - 1) offer(x, y, nearest_[at(x, y + 1)]);
            }
            endRow();
        }
    }

    std::vector<double>& squared() { return squared_; }

 private:
    static constexpr int kNone = -1;

    std::size_t points() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    }
    std::size_t at(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    }

    void offer(int x, int y, int segment) {
        const std::size_t i = at(x, y);
        // A point's own segment would be no nearer than it is.
        if (segment == kNone || segment == nearest_[i]) return;
        const double d = segments_[static_cast<std::size_t>(segment)].squaredDistance({double(x), double(y)});
        if (squared_[i] > d) {
            squared_[i] = d;
            nearest_[i] = segment;
        }
    }

    int width_, height_;
    std::vector<double> squared_;
    std::vector<int> nearest_;
    std::vector<MeasuredSegment> segments_;
};

void addCells(FullLevelSet2D& grid, const VirtualReader2D& field, int width, int height,
              NearestSegments& found, const Stretch& stretch) {
    forEachCellRead(
        width, height, [&](int x, int y) { return grid(x, y); },
        [&](int x, int y, int cell) { found.addCell(field, x, y, cell); },
        [&](int done, int all) { stretch.tell(static_cast<double>(done) / all); });
}

void addCells(FullLevelSet2D&, const DenseReader2D& field, int width, int height, NearestSegments& found,
              const Stretch& stretch) {
    forEachCrossedCell(
        field, width, height, [&](int x, int y, int cell) { found.addCell(field, x, y, cell); },
        [&](int done, int all) { stretch.tell(static_cast<double>(done) / all); });
}

}  // namespace

bool FullLevelSet2D::measureBySweeps(const quorbin::Progress& progress) {
    return isDoneToTheEnd(progress, [&](const Stretch& whole) {
        NearestSegments found(width_, height_, whole.part(0, 0.05));
        withReader(*this, [&](const auto& field) {
            addCells(*this, field, width_, height_, found, whole.part(0.05, 0.1));
        });
        constexpr int kSweeps = 2;
        Stretch sweeping = whole.part(0.1, 0.9);
        sweeping.expect(std::size_t{2 * kSweeps} * static_cast<std::size_t>(height_));
        for (int sweep = 0; sweep < kSweeps; ++sweep) found.sweep([&] { sweeping.tellStep(); });
        // What was squared becomes the new value, and only then all values are replaced.
        std::vector<double>& result = found.squared();
        const double furthest = static_cast<double>(size());
        inBlocks(size(), whole.part(0.9, 1), [&](std::size_t first, std::size_t last) {
            for (std::size_t i = first; i < last; ++i)
                result[i] =
                    result[i] <= furthest ? (values_[i] > 0 ? 1.0 : -1.0) * std::sqrt(result[i]) : values_[i];
        });
        std::copy(result.begin(), result.end(), values_.get());
    });
}

void FullLevelSet2D::ensureSignedDistance() { measureBySweeps({}); }

bool quorbin::ensureSignedDistance(FullLevelSet2D& field, const Progress& progress) {
    return field.measureBySweeps(progress);
}
