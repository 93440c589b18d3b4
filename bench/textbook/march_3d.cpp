#include <cmath>
#include <cstddef>

#include <quorbin3d.h>

#include "indexed_heap.h"
#include "march.h"

namespace {

struct Point {
    int x, y, z;
};

class TextbookMarch3D {
 public:
    explicit TextbookMarch3D(FullLevelSet3D& field)
        : field_(field),
          width_(field.getWidth()),
          height_(field.getHeight()),
          depth_(field.getDepth()),
          state_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) *
                 static_cast<std::size_t>(depth_)),
          distance_(state_.size()) {}

    std::vector<double> run() {
        findFront();
        IndexedHeap heap(state_.size());
        for (const int sign : {1, -1}) {
            for (const Point& p : front_) {
                if (state_[index(p)] != sign) continue;
                forEachNeighbour(p, [&](const Point& q) {
                    if (state_[index(q)] != 0) return;
                    heap.insert(static_cast<int>(index(q)), estimate(q, sign));
                    state_[index(q)] = 2;
                });
            }
            while (!heap.empty()) {
                const auto [id, d] = heap.removeMin();
                const Point p{id % width_, id / width_ % height_, id / width_ / height_};
                state_[index(p)] = static_cast<signed char>(sign);
                distance_[index(p)] = d;
                forEachNeighbour(p, [&](const Point& q) {
                    signed char& state = state_[index(q)];
                    if (state != 0 && state != 2) return;
                    const double tentative = estimate(q, sign);
                    if (state == 0)
                        heap.insert(static_cast<int>(index(q)), tentative);
                    else
                        heap.update(static_cast<int>(index(q)), tentative);
                    state = 2;
                });
            }
        }
        for (std::size_t i = 0; i < distance_.size(); ++i) distance_[i] *= state_[i];
        return std::move(distance_);
    }

 private:
    std::size_t index(const Point& p) const {
        return static_cast<std::size_t>(p.x) +
               static_cast<std::size_t>(width_) *
                   (static_cast<std::size_t>(p.y) +
                    static_cast<std::size_t>(height_) * static_cast<std::size_t>(p.z));
    }

    bool has(const Point& p) const {
        return p.x >= 0 && p.x < width_ && p.y >= 0 && p.y < height_ && p.z >= 0 && p.z < depth_;
    }

    template <class Visit>
    void forEachNeighbour(const Point& p, Visit visit) const {
        for (const Point& q : {Point{p.x + 1, p.y, p.z}, Point{p.x - 1, p.y, p.z}, Point{p.x, p.y + 1, p.z},
                               Point{p.x, p.y - 1, p.z}, Point{p.x, p.y, p.z + 1}, Point{p.x, p.y, p.z - 1}})
            if (has(q)) visit(q);
    }

    void makeFront(const Point& p) {
        if (state_[index(p)] != 0) return;
        state_[index(p)] = field_.get(p.x, p.y, p.z) <= 0 ? -1 : 1;
        distance_[index(p)] = field_.estimateDistanceInit(p.x, p.y, p.z);
        front_.push_back(p);
    }

    void findFront() {
        for (int z = 0; z < depth_; ++z)
            for (int y = 0; y < height_; ++y)
                for (int x = 0; x < width_; ++x)
                    for (const Point& q : {Point{x + 1, y, z}, Point{x, y + 1, z}, Point{x, y, z + 1}})
                        if (has(q) && (field_.get(x, y, z) <= 0) != (field_.get(q.x, q.y, q.z) <= 0)) {
                            makeFront({x, y, z});
                            makeFront(q);
                        }
    }

    double estimate(const Point& p, int sign) const {
        const auto known = [&](const Point& q) { return has(q) && state_[index(q)] == sign ? 1 : 0; };
        const Point xm{p.x - 1, p.y, p.z}, xp{p.x + 1, p.y, p.z}, yp{p.x, p.y + 1, p.z},
            ym{p.x, p.y - 1, p.z}, zp{p.x, p.y, p.z + 1}, zm{p.x, p.y, p.z - 1};
        const auto value = [&](const Point& q) { return known(q) != 0 ? distance_[index(q)] : 0.0; };
        return estimateDistanceHelper(known(xm), known(xp), known(yp), known(ym), known(zp), known(zm),
                                      value(xm), value(xp), value(yp), value(ym), value(zp), value(zm),
                                      field_.getXSpace(), field_.getYSpace(), field_.getZSpace());
    }

    FullLevelSet3D& field_;
    int width_, height_, depth_;
    std::vector<signed char> state_;
    std::vector<double> distance_;
    std::vector<Point> front_;
};

}  // namespace

std::vector<double> textbookMarch(FullLevelSet3D& field) { return TextbookMarch3D(field).run(); }
