#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/extraction/append_buffer.h"
#include "quorbin2d/extraction/assertion.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/extraction/shared_points.h"

using namespace lset::detail;
using Points = std::vector<brin::Vec2<double>>;
using Segments = std::vector<std::pair<int, int>>;

namespace {

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
