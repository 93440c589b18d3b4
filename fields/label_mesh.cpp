#include "label_mesh.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>

#include <quorbin3d.h>

namespace quorbin::fields {

namespace {

using Vec3 = brin::Vec3<double>;

/// A place in halves of the grid's steps.
using Place = std::array<int, 3>;

constexpr int kCorners = 8, kSides = 4;
constexpr Place kCorner[kCorners] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                     {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
/// The corners of the faces of a cell, counterclockwise seen from outside.
constexpr int kFaces[6][kSides] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                   {3, 7, 6, 2}, {0, 4, 7, 3}, {1, 2, 6, 5}};

/// What is around the grid: no label, and after all of them.
constexpr double kAround = std::numeric_limits<double>::infinity();

using CellLabels = std::array<double, kCorners>;

/// A line between two labels on a face, from one of its points to another: 0 to 3 are in the middle of the
/// side that leads on from this corner, kMiddle is that of the face.
struct Line {
    int from, to;
    double left, right;
};
constexpr int kMiddle = 4;

/// Visits the lines between the labels at the corners of a face, counterclockwise.
template <class Visit>
void forEachLine(const std::array<double, kSides>& label, Visit visit) {
    const auto next = [](int corner) { return (corner + 1) % kSides; };
    const auto at = [&](int corner) { return label[static_cast<std::size_t>(corner % kSides)]; };
    int crossed[kSides], count = 0;
    for (int side = 0; side < kSides; ++side)
        if (at(side) != at(side + 1)) crossed[count++] = side;
    if (count == 0) return;
    if (count == 2) {
        visit(Line{crossed[0], crossed[1], at(crossed[0]), at(next(crossed[0]))});
        return;
    }
    const bool isEven = at(0) == at(2), isOdd = at(1) == at(3);
    if (!isEven && !isOdd) {
        for (int i = 0; i < count; ++i) visit(Line{crossed[i], kMiddle, at(crossed[i]), at(crossed[i] + 1)});
        return;
    }
    // A label at two opposite corners stays in one piece, and the corners beside are cut off. Of two such
    // labels it is the greater one, as the case tables have it with the lesser one inside.
    const bool keepsEven = isEven && (!isOdd || at(0) > at(1));
    for (int corner = keepsEven ? 1 : 0; corner < kSides; corner += 2) {
        const int before = (corner + kSides - 1) % kSides;
        visit(Line{before, corner, at(before), at(corner)});
    }
}

class LabelMesher {
 public:
    LabelMesher(const std::vector<double>& labels, const FullLevelSet3D& field, double label)
        : labels_(labels),
          field_(field),
          size_{field.getWidth(), field.getHeight(), field.getDepth()},
          label_(label) {}

    std::optional<Mesh> make(bool capped, const Progress& progress) {
        const int around = capped ? 1 : 0;
        const int layers = size_[2] - 1 + 2 * around;
        for (int z = -around; z < size_[2] - 1 + around; ++z) {
            for (int y = -around; y < size_[1] - 1 + around; ++y)
                for (int x = -around; x < size_[0] - 1 + around; ++x) addCell({x, y, z});
            if (progress && !progress(z + around + 1, layers)) return std::nullopt;
        }
        return std::move(mesh_);
    }

 private:
    double labelAt(int x, int y, int z) const {
        if (x < 0 || y < 0 || z < 0 || x >= size_[0] || y >= size_[1] || z >= size_[2]) return kAround;
        const auto width = static_cast<std::size_t>(size_[0]), height = static_cast<std::size_t>(size_[1]);
        return labels_[static_cast<std::size_t>(x) +
                       width * (static_cast<std::size_t>(y) + height * static_cast<std::size_t>(z))];
    }

    void addCell(const Place& cell) {
        CellLabels label;
        for (std::size_t k = 0; k < kCorners; ++k)
            label[k] = labelAt(cell[0] + kCorner[k][0], cell[1] + kCorner[k][1], cell[2] + kCorner[k][2]);
        const auto own = std::count(label.begin(), label.end(), label_);
        if (own == 0 || own == kCorners) return;
        const double lowest = *std::min_element(label.begin(), label.end());
        const double other = lowest != label_ ? lowest : *std::max_element(label.begin(), label.end());
        if (own + std::count(label.begin(), label.end(), other) == kCorners)
            addByTable(cell, label, lowest);
        else
            addJunction(cell, label);
    }

    /// Of two labels, by marching cubes with the lesser one inside, whichever is asked for.
    void addByTable(const Place& cell, const CellLabels& label, double lowest) {
        unsigned number = 0;
        for (unsigned k = 0; k < kCorners; ++k)
            if (label[k] == lowest) number |= 1U << k;
        const signed char* edge = MarchingCubes::lut[number];
        for (int t = 0; t < MarchingCubes::lut_sizes[number]; ++t, edge += 3)
            addTriangle(onEdge(cell, edge[0]), onEdge(cell, edge[1]), onEdge(cell, edge[2]),
                        lowest == label_);
    }

    /// Of more, by triangles from the lines on the faces to the middle of the cell.
    void addJunction(const Place& cell, const CellLabels& label) {
        const Place middle = {2 * cell[0] + 1, 2 * cell[1] + 1, 2 * cell[2] + 1};
        for (const auto& face : kFaces) {
            std::array<double, kSides> around;
            for (std::size_t k = 0; k < kSides; ++k) around[k] = label[static_cast<std::size_t>(face[k])];
            const auto pointAt = [&](int point) {
                const int a = face[point % kSides];
                return between(cell, a, face[(point == kMiddle ? 2 : point + 1) % kSides]);
            };
            forEachLine(around, [&](const Line& line) {
                if (line.left == label_ || line.right == label_)
                    addTriangle(pointAt(line.from), pointAt(line.to), middle, line.right == label_);
            });
        }
    }

    static Place between(const Place& cell, int a, int b) {
        Place place;
        for (std::size_t axis = 0; axis < 3; ++axis)
            place[axis] = 2 * cell[axis] + kCorner[a][axis] + kCorner[b][axis];
        return place;
    }
    static Place onEdge(const Place& cell, int edge) {
        return between(cell, MarchingCubes::edges[edge][0], MarchingCubes::edges[edge][1]);
    }

    void addTriangle(const Place& a, const Place& b, const Place& c, bool isTheSame) {
        const int first = vertexAt(a), second = vertexAt(b), third = vertexAt(c);
        mesh_.triangles.push_back(isTheSame ? gpoint3{first, second, third} : gpoint3{first, third, second});
    }

    int vertexAt(const Place& place) {
        std::uint64_t key = 0;
        for (std::size_t axis = 0; axis < 3; ++axis)
            key = key * (2 * static_cast<std::uint64_t>(size_[axis]) + 1) +
                  static_cast<std::uint64_t>(place[axis] + 1);
        const auto [found, isNew] = indices_.try_emplace(key, static_cast<int>(mesh_.vertices.size()));
        if (isNew) {
            // What is around the grid is flat on its faces.
            const auto at = [&](std::size_t axis) {
                return std::clamp(place[axis] / 2.0, 0.0, size_[axis] - 1.0);
            };
            mesh_.vertices.emplace_back(at(0), at(1), at(2));
            mesh_.normals.push_back(normalAt(place));
        }
        return found->second;
    }

    static Vec3 unit(const Vec3& v) {
        const double length = std::sqrt(dot(v, v));
        return length > 0 ? v / length : v;
    }

    /// That of a face of the grid, or the mean gradient at the samples around.
    Vec3 normalAt(const Place& place) const {
        Vec3 out(0, 0, 0);
        double* const component[3] = {&out.x, &out.y, &out.z};
        for (std::size_t axis = 0; axis < 3; ++axis)
            *component[axis] = place[axis] < 0 ? -1 : place[axis] > 2 * (size_[axis] - 1) ? 1 : 0;
        if (dot(out, out) > 0) return unit(out);
        Vec3 sum(0, 0, 0);
        for (const Place& corner : kCorner) {
            Place p;
            bool isNew =
                true;  // along an axis in whose grid plane the place lies, there is one sample, not two
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const bool isBetween = place[axis] % 2 != 0;
                p[axis] = place[axis] / 2 + (isBetween ? corner[axis] : 0);
                isNew = isNew && (isBetween || corner[axis] == 0);
            }
            if (!isNew) continue;
            const double dz = field_.getDzCentral(p[0], p[1], p[2]);
            const double dy = field_.getDyCentral(p[0], p[1], p[2]);
            const double dx = field_.getDxCentral(p[0], p[1], p[2]);
            sum = sum + unit({dx, dy, dz});
        }
        return unit(sum);
    }

    const std::vector<double>& labels_;
    const FullLevelSet3D& field_;
    const std::array<int, 3> size_;
    const double label_;
    Mesh mesh_;
    std::unordered_map<std::uint64_t, int> indices_;
};

}  // namespace

Mesh meshOfLabel(const std::vector<double>& labels, const FullLevelSet3D& field, double label, bool capped) {
    return *meshOfLabel(labels, field, label, capped, {});
}

std::optional<Mesh> meshOfLabel(const std::vector<double>& labels, const FullLevelSet3D& field, double label,
                                bool capped, const Progress& progress) {
    return LabelMesher(labels, field, label).make(capped, progress);
}

}  // namespace quorbin::fields
