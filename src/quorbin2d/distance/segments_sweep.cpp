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
    NearestSegments(int width, int height)
        : width_(width),
          height_(height),
          squared_(points(), 2.0 * static_cast<double>(points())),
          nearest_(points(), kNone) {}

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

    const std::vector<double>& squared() const { return squared_; }

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
              NearestSegments& found) {
    forEachCellRead(
        width, height, [&](int x, int y) { return grid(x, y); },
        [&](int x, int y, int cell) { found.addCell(field, x, y, cell); }, [](int, int) {});
}

void addCells(FullLevelSet2D&, const DenseReader2D& field, int width, int height, NearestSegments& found) {
    forEachCrossedCell(
        field, width, height, [&](int x, int y, int cell) { found.addCell(field, x, y, cell); },
        [](int, int) {});
}

}  // namespace

bool FullLevelSet2D::measureBySweeps(const quorbin::Progress& progress) {
    NearestSegments found(width_, height_);
    withReader(*this, [&](const auto& field) { addCells(*this, field, width_, height_, found); });
    // Finding the segments takes a moment beside the sweeps, each of which goes over all rows twice.
    constexpr double kSweeps = 2;
    const Watch watch(progress, 0);
    double rows = 0;
    const auto endRow = [&] {
        constexpr int kParts = 1 << 20;
        watch.tell(static_cast<int>(++rows / (2 * kSweeps * height_) * kParts), kParts);
    };
    if (!isDoneToTheEnd([&] {
            for (int sweep = 0; sweep < kSweeps; ++sweep) found.sweep(endRow);
        }))
        return false;
    const double furthest = static_cast<double>(size());
    for (std::size_t i = 0; i < size(); ++i)
        if (found.squared()[i] <= furthest)
            values_[i] = (values_[i] > 0 ? 1.0 : -1.0) * std::sqrt(found.squared()[i]);
    return true;
}

void FullLevelSet2D::ensureSignedDistance() { measureBySweeps({}); }

bool quorbin::ensureSignedDistance(FullLevelSet2D& field, const Progress& progress) {
    return field.measureBySweeps(progress);
}
