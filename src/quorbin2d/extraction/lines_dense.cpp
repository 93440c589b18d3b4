#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/assertion.h"
#include "common/extraction/append_buffer.h"
#include "quorbin2d/extraction/cells.h"

using namespace lset::detail;
using Points = std::vector<brin::Vec2<double>>;
using Segments = std::vector<std::pair<int, int>>;

namespace {

/// The points on the grid edges of the row of cells under way: enough to share each between the two cells
/// that have its edge.
class SharedPoints {
 public:
    explicit SharedPoints(int width)
        : width_(static_cast<std::size_t>(width)),
          indices_(3 * width_ + 1, kNone),
          start_{0, 2 * width_ + 1, width_, 2 * width_} {}

    /// The index kept for edge 0 to 3 of the cell at column x, kNone if there is none yet.
    int& at(int x, int edge) { return indices_[start_[edge] + static_cast<std::size_t>(x)]; }

    void nextRow() {
        std::swap(start_[0], start_[2]);
        clear(start_[2]);
        clear(start_[3]);
    }

    static constexpr int kNone = -1;

 private:
    void clear(std::size_t start) {
        const auto first = indices_.begin() + static_cast<std::ptrdiff_t>(start);
        std::fill(first, first + static_cast<std::ptrdiff_t>(width_), kNone);
    }

    std::size_t width_;
    std::vector<int> indices_;  // edges 0 of the row, edges 2, and the upright edges from left to right
    std::size_t start_[4];      // of the indices of an edge, by its number in the cell
};

/// The index of the point on an edge of a cell, which is made unless it is there.
template <class Reader>
int pointOn(const CellCrossings<Reader>& cell, int edge, int& index,
            AppendBuffer<brin::Vec2<double>>& newPoints) {
    if (index == SharedPoints::kNone) {
        index = static_cast<int>(newPoints.size());
        newPoints.next() = cell.on(edge);
    }
    return index;
}

}  // namespace

void FullLevelSet2D::getLines(Points& points, Segments& segments) const {
    points.clear();
    segments.clear();
    AppendBuffer newPoints(points);
    AppendBuffer newSegments(segments);
    withReader(*this, [&](const auto& field) {
        const auto visit = [&](int x, int y, int caseOfCell) {
            const CellCrossings<std::decay_t<decltype(field)>> cell(field, x, y);
            forEachSegment(caseOfCell, [&](int from, int to) {
                newPoints.next() = cell.on(from);
                newPoints.next() = cell.on(to);
                const int count = static_cast<int>(newPoints.size());
                newSegments.next() = {count - 2, count - 1};
            });
        };
        forEachCrossedCell(field, width_, height_, visit, [&](int rowsDone, int rows) {
            newPoints.progress(rowsDone, rows);
            newSegments.progress(rowsDone, rows);
        });
    });
    newPoints.flush();
    newSegments.flush();
}

void FullLevelSet2D::getLinesUnique(Points& points, Segments& segments) const {
    points.clear();
    segments.clear();
    AppendBuffer newPoints(points);
    AppendBuffer newSegments(segments);
    SharedPoints shared(width_);
    withReader(*this, [&](const auto& field) {
        const auto visit = [&](int x, int y, int caseOfCell) {
            const CellCrossings<std::decay_t<decltype(field)>> cell(field, x, y);
            forEachSegment(caseOfCell, [&](int from, int to) {
                const int start = pointOn(cell, from, shared.at(x, from), newPoints);
                const int end = pointOn(cell, to, shared.at(x, to), newPoints);
                newSegments.next() = {start, end};
            });
        };
        forEachCrossedCell(field, width_, height_, visit, [&](int rowsDone, int rows) {
            shared.nextRow();
            newPoints.progress(rowsDone, rows);
            newSegments.progress(rowsDone, rows);
        });
    });
    newPoints.flush();
    newSegments.flush();
}

int FullLevelSet2D::getUniqueIndexMI(int x, int y, int edge) const {
    if (edge < 0 || edge > 3) failAssertion("getUniqueIndexMI", "quorbin2d", 1166, "0");
    constexpr std::int64_t kRow[4] = {0, 0, 1, 0}, kOffset[4] = {0, 3, 0, 1};
    return static_cast<int>(((y + kRow[edge]) * width_ + x) * 2 + kOffset[edge]);
}
