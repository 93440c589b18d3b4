#include <cstddef>
#include <stdexcept>
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

/// How a region goes through a cell in which it meets others.
enum class Meeting {
    kAsInTheTable,
    kJoined,    ///< its two opposite corners are connected, the others are cut off
    kInMiddle,  ///< by way of the middle of the cell
};

/// Of a field alone, which knows inside and outside.
struct NoLabels {
    static Meeting in(const Cell&) { return Meeting::kAsInTheTable; }
};

/// Of regions by their labels.
struct Labels {
    const std::vector<double>& labels;
    Size size;

    Meeting in(const Cell& cell) const {
        if (!size.holds(cell.x, cell.y) || !size.holds(cell.x + 1, cell.y + 1)) return Meeting::kAsInTheTable;
        double corner[4];
        for (int k = 0; k < 4; ++k)
            corner[k] =
                labels[static_cast<std::size_t>(cell.y + kSquareY[k]) * static_cast<std::size_t>(size.width) +
                       static_cast<std::size_t>(cell.x + kSquareX[k])];
        // Two labels at opposite corners each: the table connects those at 1 and 3 and cuts the others off.
        if (cell.number() == kCutFrom1And3)
            return corner[1] == corner[3] ? Meeting::kAsInTheTable : Meeting::kJoined;
        int changes = 0;
        for (int k = 0; k < 4; ++k) changes += corner[k] != corner[(k + 1) % 4] ? 1 : 0;
        const bool isJoined = corner[0] == corner[2] || corner[1] == corner[3];
        return changes > 2 && !isJoined ? Meeting::kInMiddle : Meeting::kAsInTheTable;
    }

 private:
    static constexpr int kCutFrom1And3 = 10;
};

/// The contours of a field: closed along its border by cells around the grid, or of its own cells alone.
template <class Reader, class Meetings>
RingTrace trace(const Reader& field, Size size, Border border, const Meetings& meetings) {
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
            const auto add = [&](int from, int to) {
                const int start = pointOn(from);
                const int end = pointOn(to);
                trace.segments.emplace_back(start, end);
            };
            const Meeting meeting = meetings.in(cell);
            if (meeting == Meeting::kJoined) {
                add(0, 1);
                add(2, 3);
                return;
            }
            forEachSegment(cell.number(), add);
            if (meeting != Meeting::kInMiddle) return;
            const int middle = static_cast<int>(trace.points.size());
            trace.points.emplace_back(cell.x + 0.5, cell.y + 0.5);
            const int end = std::exchange(trace.segments.back().second, middle);
            trace.segments.emplace_back(middle, end);
        });
        shared.nextRow();
        lower.swap(upper);
    }
    trace.rowCrossings.insert(trace.rowCrossings.begin(), firstRow.begin(), firstRow.end());
    return trace;
}

/// The regions of a field, closed along the border of the grid.
template <class Reader, class Meetings>
std::vector<quorbin::Polygon> closedContours(const Reader& reader, Size size, const Meetings& meetings) {
    if (size.width < 1 || size.height < 1) return {};
    const double hx = reader.hx();
    const double hy = reader.hy();
    RingTrace traced = trace(reader, size, Border::kClosed, meetings);
    return nestedRings(traced, hx, hy);
}

template <class Reader, class Meetings>
quorbin::OpenContours openedContours(const Reader& reader, Size size, const Meetings& meetings) {
    if (size.width < 2 || size.height < 2) return {};
    const double hx = reader.hx();
    const double hy = reader.hy();
    RingTrace traced = trace(reader, size, Border::kOpen, meetings);
    std::vector<quorbin::Ring> lines = openLines(traced, hx, hy);
    return {nestedRings(traced, hx, hy), std::move(lines)};
}

Labels labelsOf(const std::vector<double>& labels, Size size) {
    if (labels.size() != static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height))
        throw std::invalid_argument("contours: the labels are not those of this field; give one a sample");
    return {labels, size};
}

}  // namespace

namespace quorbin {

std::vector<Polygon> contours(const FullLevelSet2D& field) {
    return withReader(field,
                      [](const auto& reader) { return closedContours(reader, sizeOf(reader), NoLabels()); });
}

OpenContours openContours(const FullLevelSet2D& field) {
    return withReader(field,
                      [](const auto& reader) { return openedContours(reader, sizeOf(reader), NoLabels()); });
}

std::vector<Polygon> contours(const FullLevelSet2D& field, const std::vector<double>& labels) {
    return withReader(field, [&](const auto& reader) {
        const Size size = sizeOf(reader);
        return closedContours(reader, size, labelsOf(labels, size));
    });
}

OpenContours openContours(const FullLevelSet2D& field, const std::vector<double>& labels) {
    return withReader(field, [&](const auto& reader) {
        const Size size = sizeOf(reader);
        return openedContours(reader, size, labelsOf(labels, size));
    });
}

}  // namespace quorbin
