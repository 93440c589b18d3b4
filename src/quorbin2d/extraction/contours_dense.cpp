#include <algorithm>
#include <cstddef>
#include <stdexcept>
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

    void read(const quorbin::FieldRows& rows, int y) {
        if (size_.holds(0, y))
            rows.read(y, values_.data() + 1);
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

/// How a region goes through a cell in which it meets others.
enum class Meeting {
    kAsInTheTable,
    kJoined,    ///< its two opposite corners are connected, the others are cut off
    kInMiddle,  ///< by way of the middle of the cell
};

/// Of a field alone, which knows inside and outside.
struct NoLabels {
    static void readNext(int) {}
    static Meeting in(const Cell&) { return Meeting::kAsInTheTable; }
};

/// Of regions by the labels in the two rows that are read last.
class LabelRows {
 public:
    explicit LabelRows(const quorbin::FieldRows& rows)
        : rows_(rows), lower_(static_cast<std::size_t>(rows.width)), upper_(lower_) {}

    void readNext(int y) {
        lower_.swap(upper_);
        if (y >= 0 && y < rows_.height) rows_.readLabels(y, upper_.data());
    }
    Meeting in(const Cell& cell) const {
        if (!cell.size.holds(cell.x, cell.y) || !cell.size.holds(cell.x + 1, cell.y + 1))
            return Meeting::kAsInTheTable;
        const auto left = static_cast<std::size_t>(cell.x), right = left + 1;
        const double corner[4] = {lower_[left], lower_[right], upper_[right], upper_[left]};
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

    const quorbin::FieldRows& rows_;
    std::vector<double> lower_, upper_;
};

/// Finds the segments of contours row by row: closed along the border by cells around the grid, or of its own
/// cells alone. Each row is asked for once, in order.
template <class Meetings>
void trace(const quorbin::FieldRows& rows, Border border, Meetings meetings, RingSweep& sweep,
           Stretch stretch) {
    const Size size{rows.width, rows.height};
    const int around = border == Border::kClosed ? 1 : 0;
    const int firstX = -around, lastX = size.width - 2 + around;
    const int firstY = -around, lastY = size.height - 2 + around;
    SurroundedRow lower(size), upper(size);
    const auto readInto = [&](SurroundedRow& row, int y) {
        row.read(rows, y);
        meetings.readNext(y);
    };
    readInto(lower, firstY);
    stretch.expect(static_cast<std::size_t>(lastY - firstY + 1));
    SharedPoints shared(size.width + 2);
    for (int y = firstY; y <= lastY; ++y) {
        readInto(upper, y + 1);
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
            const Meeting meeting = meetings.in(cell);
            const auto add = [&](int from, int to) {
                int start = pointOn(from);
                const int end = pointOn(to);
                if (meeting == Meeting::kInMiddle) {
                    const int middle = sweep.addPoint({cell.x + 0.5, cell.y + 0.5}, false);
                    sweep.addSegment(start, middle);
                    start = middle;
                }
                sweep.addSegment(start, end);
            };
            if (meeting == Meeting::kJoined) {
                add(kBottomEdge, kRightEdge);
                add(kTopEdge, kLeftEdge);
            } else {
                forEachSegment(cell.number(), add);
            }
        });
        sweep.endRow();
        shared.nextRow();
        lower.swap(upper);
        stretch.tellStep();
    }
}

void traceAll(const quorbin::FieldRows& rows, Border border, RingSweep& sweep, const Stretch& stretch) {
    if (rows.readLabels)
        trace(rows, border, LabelRows(rows), sweep, stretch);
    else
        trace(rows, border, NoLabels(), sweep, stretch);
}

/// The rows of a grid, point by point: a subclass may have a say. Its size is read once, as it may change its
/// mind.
template <class Reader>
quorbin::FieldRows rowsOf(const Reader& reader) {
    const int width = reader.width();
    const int height = reader.height();
    const double hx = reader.hx();
    const double hy = reader.hy();
    return {width, height, hx, hy, [&reader, width](int y, double* row) {
                for (int x = 0; x < width; ++x) row[x] = reader.getInGrid(x, y);
            }};
}

/// The labels must outlive them.
quorbin::FieldRows withLabels(quorbin::FieldRows rows, const std::vector<double>& labels) {
    const auto width = static_cast<std::size_t>(rows.width);
    if (labels.size() != width * static_cast<std::size_t>(rows.height))
        throw std::invalid_argument("contours: the labels are not those of this field; give one a sample");
    rows.readLabels = [&labels, width](int y, double* row) {
        std::copy_n(labels.data() + static_cast<std::size_t>(y) * width, width, row);
    };
    return rows;
}

std::optional<std::vector<quorbin::Polygon>> allContours(const quorbin::FieldRows& rows,
                                                         const quorbin::Progress& progress) {
    std::vector<quorbin::Polygon> found;
    const auto take = [&](quorbin::Polygon&& region) { found.push_back(std::move(region)); };
    if (!quorbin::contours(rows, take, progress)) return std::nullopt;
    return found;
}

std::optional<quorbin::OpenContours> allOpenContours(const quorbin::FieldRows& rows,
                                                     const quorbin::Progress& progress) {
    quorbin::OpenContours found;
    const auto takeRegion = [&](quorbin::Polygon&& region) { found.regions.push_back(std::move(region)); };
    const auto takeLine = [&](quorbin::Ring&& line) { found.lines.push_back(std::move(line)); };
    if (!quorbin::openContours(rows, takeRegion, takeLine, progress)) return std::nullopt;
    return found;
}

}  // namespace

namespace quorbin {

std::optional<std::vector<Polygon>> contours(const FullLevelSet2D& field, const Progress& progress) {
    return withReader(field, [&](const auto& reader) { return allContours(rowsOf(reader), progress); });
}

std::optional<OpenContours> openContours(const FullLevelSet2D& field, const Progress& progress) {
    return withReader(field, [&](const auto& reader) { return allOpenContours(rowsOf(reader), progress); });
}

std::optional<std::vector<Polygon>> contours(const FullLevelSet2D& field, const std::vector<double>& labels,
                                             const Progress& progress) {
    return withReader(
        field, [&](const auto& reader) { return allContours(withLabels(rowsOf(reader), labels), progress); });
}

std::optional<OpenContours> openContours(const FullLevelSet2D& field, const std::vector<double>& labels,
                                         const Progress& progress) {
    return withReader(field, [&](const auto& reader) {
        return allOpenContours(withLabels(rowsOf(reader), labels), progress);
    });
}

std::vector<Polygon> contours(const FullLevelSet2D& field) { return *contours(field, Progress()); }
OpenContours openContours(const FullLevelSet2D& field) { return *openContours(field, Progress()); }
std::vector<Polygon> contours(const FullLevelSet2D& field, const std::vector<double>& labels) {
    return *contours(field, labels, Progress());
}
OpenContours openContours(const FullLevelSet2D& field, const std::vector<double>& labels) {
    return *openContours(field, labels, Progress());
}

bool contours(const FieldRows& rows, const std::function<void(Polygon&&)>& take, const Progress& progress) {
    if (rows.width < 1 || rows.height < 1) return true;
    return isDoneToTheEnd(progress, [&](const Stretch& whole) {
        RingSweep sweep(rows.xSpace, rows.ySpace, true, take);
        traceAll(rows, Border::kClosed, sweep, whole);
    });
}

bool openContours(const FieldRows& rows, const std::function<void(Polygon&&)>& takeRegion,
                  const std::function<void(Ring&&)>& takeLine, const Progress& progress) {
    if (rows.width < 2 || rows.height < 2) return true;
    return isDoneToTheEnd(progress, [&](const Stretch& whole) {
        RingSweep sweep(rows.xSpace, rows.ySpace, false, takeRegion);
        traceAll(rows, Border::kOpen, sweep, whole.part(0, 0.9));
        sweep.finish(takeLine, whole.part(0.9, 1));
    });
}

}  // namespace quorbin
