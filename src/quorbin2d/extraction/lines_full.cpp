#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/assertion.h"
#include "quorbin2d/extraction/append_buffer.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/marching_squares.h"

using namespace lset::detail;
using Points = std::vector<brin::Vec2<double>>;
using Segments = std::vector<std::pair<int, int>>;

namespace {

/// The points on the grid edges of the row of cells under way, by the edge's place: enough to share each
/// point between the two cells that have its edge.
class SharedPoints {
 public:
    explicit SharedPoints(int width)
        : lower_(places(width), kNone), upper_(places(width), kNone), upright_(places(width), kNone) {}

    /// The index kept for edge 0 to 3 of the cell at column x, kNone if there is none yet.
    int& at(int x, int edge) {
        const auto column = static_cast<std::size_t>(x);
        switch (edge) {
            case 0:
                return lower_[column];
            case 1:
                return upright_[column + 1];
            case 2:
                return upper_[column];
            default:
                return upright_[column];
        }
    }

    void nextRow() {
        lower_.swap(upper_);
        std::fill(upper_.begin(), upper_.end(), kNone);
        std::fill(upright_.begin(), upright_.end(), kNone);
    }

    static constexpr int kNone = -1;

 private:
    static std::size_t places(int width) { return static_cast<std::size_t>(width); }

    std::vector<int> lower_, upper_, upright_;
};

}  // namespace

void FullLevelSet2D::getLines(Points& points, Segments& segments) const {
    points.clear();
    segments.clear();
    AppendBuffer newPoints(points);
    AppendBuffer newSegments(segments);
    withReader(*this, [&](const auto& field) {
        const auto visit = [&](int x, int y, int cell) {
            const int* edge = MarchingSquares::lut[cell];
            for (int s = 0; s < MarchingSquares::lut_size[cell]; ++s, edge += 2) {
                newPoints.next() = crossingOnEdge(field, x, y, edge[0]);
                newPoints.next() = crossingOnEdge(field, x, y, edge[1]);
                const int count = static_cast<int>(newPoints.size());
                newSegments.next() = {count - 2, count - 1};
            }
        };
        forEachCrossedCell(field, width_, height_, visit, [&](int rowsDone) {
            newPoints.progress(rowsDone, height_ - 1);
            newSegments.progress(rowsDone, height_ - 1);
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
        const auto pointOn = [&](int x, int y, int edge) {
            int& index = shared.at(x, edge);
            if (index == SharedPoints::kNone) {
                index = static_cast<int>(newPoints.size());
                newPoints.next() = crossingOnEdge(field, x, y, edge);
            }
            return index;
        };
        const auto visit = [&](int x, int y, int cell) {
            const int* edge = MarchingSquares::lut[cell];
            for (int s = 0; s < MarchingSquares::lut_size[cell]; ++s, edge += 2) {
                const int start = pointOn(x, y, edge[0]);
                const int end = pointOn(x, y, edge[1]);
                newSegments.next() = {start, end};
            }
        };
        forEachCrossedCell(field, width_, height_, visit, [&](int rowsDone) {
            shared.nextRow();
            newPoints.progress(rowsDone, height_ - 1);
            newSegments.progress(rowsDone, height_ - 1);
        });
    });
    newPoints.flush();
    newSegments.flush();
}

int FullLevelSet2D::getUniqueIndexMI(int x, int y, int edge) const {
    switch (edge) {
        case 0:
            return (y * width_ + x) * 2;
        case 1:
            return (y * width_ + x) * 2 + 3;
        case 2:
            return ((y + 1) * width_ + x) * 2;
        case 3:
            return (y * width_ + x) * 2 + 1;
        default:
            failAssertion("getUniqueIndexMI", "quorbin2d", 1166, "0");
    }
}
