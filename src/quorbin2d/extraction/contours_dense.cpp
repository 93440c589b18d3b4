#include <cstddef>
#include <limits>
#include <vector>

#include "quorbin2d/contours.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/extraction/nested_rings.h"
#include "quorbin2d/extraction/shared_points.h"

using namespace lset::detail;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A row of the field with a point beyond each end, or one beyond the first or the last row: all of these are
/// outside, and so far that a contour between one of them and a sample passes through the sample.
class SurroundedRow {
 public:
    explicit SurroundedRow(int width)
        : values_(static_cast<std::size_t>(width) + 2, kInfinity), inside_(width + 2) {}

    template <class Reader>
    void read(const Reader& field, int y) {
        const int width = field.width();
        const bool isInGrid = y >= 0 && y < field.height();
        for (int x = 0; x < width; ++x) {
            values_[static_cast<std::size_t>(x) + 1] = isInGrid ? field.getInGrid(x, y) : kInfinity;
        }
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
    std::vector<double> values_;
    SignRow inside_;
};

/// A cell between two rows; its edges and corners are numbered as in the tables.
struct Cell {
    const SurroundedRow &lower, &upper;
    int x, y;

    int number() const {
        return cellCase(!lower.isInside(x), !lower.isInside(x + 1), !upper.isInside(x + 1),
                        !upper.isInside(x));
    }
    brin::Vec2<double> crossingOn(int edge) const {
        const auto corner = [&](int k) {
            return brin::Vec2<double>(x + (k == 1 || k == 2), y + (k == 2 || k == 3));
        };
        const auto value = [&](int k) { return (k >= 2 ? upper : lower).value(x + (k == 1 || k == 2)); };
        const int end = (edge + 1) % 4;
        return crossingBetween(corner(edge), value(edge), corner(end), value(end));
    }
};

constexpr int kTopEdge = 2;

template <class Reader>
RingTrace trace(const Reader& field) {
    RingTrace trace;
    const int width = field.width(), height = field.height();
    SurroundedRow lower(width), upper(width);
    lower.read(field, -1);
    SharedPoints shared(width + 2);
    for (int y = -1; y < height; ++y) {
        upper.read(field, y + 1);
        forEachMixedCell(lower.inside(), upper.inside(), width + 1, [&](int column) {
            const Cell cell{lower, upper, column - 1, y};
            const auto pointOn = [&](int edge) {
                int& index = shared.at(column, edge);
                if (index == SharedPoints::kNone) {
                    index = static_cast<int>(trace.points.size());
                    trace.points.push_back(cell.crossingOn(edge));
                    // The bottom edges of the first row have no crossings, and all others were top edges
                    // before.
                    if (edge == kTopEdge)
                        trace.rowCrossings.push_back({index, y + 1, !upper.isInside(cell.x)});
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
    return trace;
}

}  // namespace

std::vector<quorbin::Polygon> quorbin::contours(const FullLevelSet2D& field) {
    return withReader(field, [](const auto& reader) -> std::vector<Polygon> {
        if (reader.width() < 1 || reader.height() < 1) return {};
        RingTrace traced = trace(reader);
        return nestedRings(traced, reader.hx(), reader.hy());
    });
}
