#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "common/watch.h"
#include "quorbin2d/contours.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/extraction/ring_sweep.h"
#include "quorbin2d/extraction/shared_points.h"

using namespace lset::detail;

namespace {

struct Size {
    int width, height;
    bool holds(int x, int y) const { return x >= 0 && x < width && y >= 0 && y < height; }
};

/// A row of the field with a point beyond each end, or one beyond the first or the last row: all of these are
/// outside.
class SurroundedRow {
 public:
    explicit SurroundedRow(Size size)
        : size_(size),
          values_(static_cast<std::size_t>(size.width) + 2, kOutsideValue),
          inside_(size.width + 2) {}

    template <class ReadRow>
    void read(const ReadRow& readRow, int y) {
        if (size_.holds(0, y))
            readRow(y, values_.data() + 1);
        else
            std::fill(values_.begin(), values_.end(), kOutsideValue);
        inside_.flagNotPositive(values_.data());
    }
    double value(int x) const { return values_[static_cast<std::size_t>(x) + 1]; }
    bool isInside(int x) const { return inside_[x + 1]; }
    const SignRow& inside() const { return inside_; }

    void swap(SurroundedRow& other) {
        values_.swap(other.values_);
        inside_.swap(other.inside_);
    }

 private:
    static constexpr double kOutsideValue = 1;

    Size size_;
    std::vector<double> values_;
    SignRow inside_;
};

/// A cell between two rows; its edges and corners are numbered as in the tables.
struct Cell {
    const SurroundedRow &lower, &upper;
    Size size;
    int x, y;

    int number() const {
        return cellCase(!lower.isInside(x), !lower.isInside(x + 1), !upper.isInside(x + 1),
                        !upper.isInside(x));
    }
    /// Where an edge leads out of the grid, the sample at its end in the grid.
    brin::Vec2<double> crossingOn(int edge) const {
        const auto [x0, y0, value0] = corner(edge);
        const auto [x1, y1, value1] = corner((edge + 1) % 4);
        const brin::Vec2<double> a(x0, y0), b(x1, y1);
        if (!size.holds(x0, y0)) return b;
        if (!size.holds(x1, y1)) return a;
        return crossingBetween(a, value0, b, value1);
    }

 private:
    struct Corner {
        int x, y;
        double value;
    };
    Corner corner(int k) const {
        const int cornerX = x + kSquareX[k];
        return {cornerX, y + kSquareY[k], (kSquareY[k] == 1 ? upper : lower).value(cornerX)};
    }
};

constexpr int kBottomEdge = 0, kRightEdge = 1, kTopEdge = 2, kLeftEdge = 3;

enum class Border { kClosed, kOpen };

/// Finds the segments of contours row by row: closed along the border by cells around the grid, or of its own
/// cells alone. readRow(y, values) is asked for each row once, in order.
template <class ReadRow>
void trace(const ReadRow& readRow, Size size, Border border, RingSweep& sweep, const Watch& watch) {
    const int around = border == Border::kClosed ? 1 : 0;
    const int firstX = -around, lastX = size.width - 2 + around;
    const int firstY = -around, lastY = size.height - 2 + around;
    SurroundedRow lower(size), upper(size);
    lower.read(readRow, firstY);
    SharedPoints shared(size.width + 2);
    for (int y = firstY; y <= lastY; ++y) {
        upper.read(readRow, y + 1);
        forEachMixedCell(lower.inside(), upper.inside(), size.width + 1, [&](int column) {
            const Cell cell{lower, upper, size, column - 1, y};
            if (cell.x < firstX || cell.x > lastX) return;
            const auto isOnBorder = [&](int edge) {
                return border == Border::kOpen &&
                       ((edge == kLeftEdge && cell.x == firstX) || (edge == kRightEdge && cell.x == lastX) ||
                        (edge == kBottomEdge && y == firstY) || (edge == kTopEdge && y == lastY));
            };
            const auto pointOn = [&](int edge) {
                int& number = shared.at(column, edge);
                if (number == SharedPoints::kNone) {
                    number = sweep.addPoint(cell.crossingOn(edge), isOnBorder(edge));
                    if (edge == kTopEdge) sweep.addCrossing(number, !upper.isInside(cell.x));
                }
                return number;
            };
            forEachSegment(cell.number(), [&](int from, int to) {
                const int start = pointOn(from);
                const int end = pointOn(to);
                sweep.addSegment(start, end);
            });
        });
        sweep.endRow();
        shared.nextRow();
        lower.swap(upper);
        watch.tell(y - firstY + 1, lastY - firstY + 1);
    }
}

/// The rows of a grid, point by point: a subclass may have a say.
template <class Reader>
auto rowsOf(const Reader& reader, int width) {
    return [&reader, width](int y, double* row) {
        for (int x = 0; x < width; ++x) row[x] = reader.getInGrid(x, y);
    };
}

/// Read once: a subclass may change its mind.
template <class Reader>
Size sizeOf(const Reader& field) {
    const int width = field.width();
    const int height = field.height();
    return {width, height};
}

template <class ReadRow>
void traceClosed(const ReadRow& readRow, Size size, double hx, double hy,
                 const RingSweep::TakeRegion& takeRegion, const Watch& watch) {
    if (size.width < 1 || size.height < 1) return;
    RingSweep sweep(hx, hy, true, takeRegion);
    trace(readRow, size, Border::kClosed, sweep, watch);
}

template <class ReadRow>
void traceOpen(const ReadRow& readRow, Size size, double hx, double hy,
               const RingSweep::TakeRegion& takeRegion, const RingSweep::TakeLine& takeLine,
               const Watch& watch) {
    if (size.width < 2 || size.height < 2) return;
    RingSweep sweep(hx, hy, false, takeRegion);
    trace(readRow, size, Border::kOpen, sweep, watch);
    sweep.finish(takeLine);
}

}  // namespace

namespace quorbin {

std::vector<Polygon> contours(const FullLevelSet2D& field) {
    std::vector<Polygon> polygons;
    const Progress nobody;
    const auto take = [&](Polygon&& polygon) { polygons.push_back(std::move(polygon)); };
    withReader(field, [&](const auto& reader) {
        const Size size = sizeOf(reader);
        const double hx = reader.hx();
        const double hy = reader.hy();
        traceClosed(rowsOf(reader, size.width), size, hx, hy, take, Watch(nobody, 0));
    });
    return polygons;
}

OpenContours openContours(const FullLevelSet2D& field) {
    OpenContours found;
    const Progress nobody;
    const auto takeRegion = [&](Polygon&& polygon) { found.regions.push_back(std::move(polygon)); };
    const auto takeLine = [&](Ring&& line) { found.lines.push_back(std::move(line)); };
    withReader(field, [&](const auto& reader) {
        const Size size = sizeOf(reader);
        const double hx = reader.hx();
        const double hy = reader.hy();
        traceOpen(rowsOf(reader, size.width), size, hx, hy, takeRegion, takeLine, Watch(nobody, 0));
    });
    return found;
}

bool contours(const FieldRows& rows, const std::function<void(Polygon&&)>& take, const Progress& progress) {
    return isDoneToTheEnd([&] {
        traceClosed(rows.read, {rows.width, rows.height}, rows.xSpace, rows.ySpace, take, Watch(progress, 0));
    });
}

bool openContours(const FieldRows& rows, const std::function<void(Polygon&&)>& takeRegion,
                  const std::function<void(Ring&&)>& takeLine, const Progress& progress) {
    return isDoneToTheEnd([&] {
        traceOpen(rows.read, {rows.width, rows.height}, rows.xSpace, rows.ySpace, takeRegion, takeLine,
                  Watch(progress, 0));
    });
}

}  // namespace quorbin
