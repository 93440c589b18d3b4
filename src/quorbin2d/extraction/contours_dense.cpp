#include <cstddef>
#include <utility>
#include <vector>

#include "quorbin2d/contours.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/extraction/nested_rings.h"
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

    template <class Reader>
    void read(const Reader& field, int y) {
        for (int x = 0; x < size_.width; ++x)
            values_[static_cast<std::size_t>(x) + 1] =
                size_.holds(x, y) ? field.getInGrid(x, y) : kOutsideValue;
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

/// Read once: a subclass may change its mind.
template <class Reader>
Size sizeOf(const Reader& field) {
    const int width = field.width();
    const int height = field.height();
    return {width, height};
}

constexpr int kBottomEdge = 0, kTopEdge = 2;

enum class Border { kClosed, kOpen };

/// The contours of a field: closed along its border by cells around the grid, or of its own cells alone.
template <class Reader>
RingTrace trace(const Reader& field, Size size, Border border) {
    RingTrace trace;
    const int width = size.width;
    const int height = size.height;
    const int around = border == Border::kClosed ? 1 : 0;
    SurroundedRow lower(size), upper(size);
    lower.read(field, -around);
    SharedPoints shared(width + 2);
    std::vector<RingTrace::RowCrossing> firstRow;
    for (int y = -around; y < height - 1 + around; ++y) {
        upper.read(field, y + 1);
        forEachMixedCell(lower.inside(), upper.inside(), width + 1, [&](int column) {
            const Cell cell{lower, upper, size, column - 1, y};
            if (cell.x < -around || cell.x >= width - 1 + around) return;
            const auto pointOn = [&](int edge) {
                int& index = shared.at(column, edge);
                if (index == SharedPoints::kNone) {
                    index = static_cast<int>(trace.points.size());
                    trace.points.push_back(cell.crossingOn(edge));
                    // All other bottom edges have been top edges before.
                    if (edge == kTopEdge)
                        trace.rowCrossings.push_back({index, y + 1, !upper.isInside(cell.x)});
                    else if (edge == kBottomEdge)
                        firstRow.push_back({index, y, !lower.isInside(cell.x)});
                }
                return index;
            };
            forEachSegment(cell.number(), [&](int from, int to) {
                const int start = pointOn(from);
                const int end = pointOn(to);
                trace.segments.emplace_back(start, end);
            });
        });
        shared.nextRow();
        lower.swap(upper);
    }
    trace.rowCrossings.insert(trace.rowCrossings.begin(), firstRow.begin(), firstRow.end());
    return trace;
}

}  // namespace

namespace quorbin {

std::vector<Polygon> contours(const FullLevelSet2D& field) {
    return withReader(field, [](const auto& reader) -> std::vector<Polygon> {
        const Size size = sizeOf(reader);
        if (size.width < 1 || size.height < 1) return {};
        const double hx = reader.hx();
        const double hy = reader.hy();
        RingTrace traced = trace(reader, size, Border::kClosed);
        return nestedRings(traced, hx, hy);
    });
}

OpenContours openContours(const FullLevelSet2D& field) {
    return withReader(field, [](const auto& reader) -> OpenContours {
        const Size size = sizeOf(reader);
        if (size.width < 2 || size.height < 2) return {};
        const double hx = reader.hx();
        const double hy = reader.hy();
        RingTrace traced = trace(reader, size, Border::kOpen);
        std::vector<Ring> lines = openLines(traced, hx, hy);
        return {nestedRings(traced, hx, hy), std::move(lines)};
    });
}

}  // namespace quorbin
