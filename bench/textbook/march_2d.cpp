#include "march.h"

#include <cmath>
#include <cstddef>

#include "indexed_heap.h"

namespace {

class TextbookMarch {
 public:
    TextbookMarch(const std::vector<double>& field, int width, int height, double hx, double hy)
        : field_(field),
          width_(width),
          height_(height),
          hx_(hx),
          hy_(hy),
          state_(field.size(), 0),
          distance_(field.size()) {}

    std::vector<double> run() {
        std::vector<int> front = findFront();
        IndexedHeap heap(field_.size());
        for (int sign : {1, -1}) {
            for (int i : front) {
                if (state(i) != sign) continue;
                forEachNeighbour(i, [&](int x, int y) {
                    const int n = index(x, y);
                    if (state(n) != 0) return;
                    heap.insert(n, estimate(x, y, sign));
                    state(n) = 2;
                });
            }
            while (!heap.empty()) {
                const auto [i, d] = heap.removeMin();
                state(i) = static_cast<signed char>(sign);
                distance(i) = d;
                forEachNeighbour(i, [&](int x, int y) {
                    const int n = index(x, y);
                    if (state(n) != 0 && state(n) != 2) return;
                    const double d2 = estimate(x, y, sign);
                    if (state(n) == 0)
                        heap.insert(n, d2);
                    else
                        heap.update(n, d2);
                    state(n) = 2;
                });
            }
        }
        for (std::size_t i = 0; i < distance_.size(); ++i) distance_[i] *= state_[i];
        return std::move(distance_);
    }

 private:
    static constexpr double kNone = 1e11;

    int index(int x, int y) const { return y * width_ + x; }
    signed char& state(int i) { return state_[static_cast<std::size_t>(i)]; }
    double& distance(int i) { return distance_[static_cast<std::size_t>(i)]; }
    double value(int x, int y) const { return field_[static_cast<std::size_t>(index(x, y))]; }
    bool inside(int x, int y) const { return value(x, y) <= 0; }

    template <class Visit>
    void forEachNeighbour(int i, Visit visit) const {
        const int y = i / width_, x = i - y * width_;
        if (x + 1 < width_) visit(x + 1, y);
        if (x > 0) visit(x - 1, y);
        if (y + 1 < height_) visit(x, y + 1);
        if (y > 0) visit(x, y - 1);
    }

    std::vector<int> findFront() {
        std::vector<int> front;
        const auto add = [&](int x, int y) {
            const int i = index(x, y);
            if (state(i) != 0) return;
            state(i) = inside(x, y) ? -1 : 1;
            distance(i) = firstDistance(x, y);
            front.push_back(i);
        };
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x) {
                if (x + 1 < width_ && inside(x, y) != inside(x + 1, y)) {
                    add(x, y);
                    add(x + 1, y);
                }
                if (y + 1 < height_ && inside(x, y) != inside(x, y + 1)) {
                    add(x, y);
                    add(x, y + 1);
                }
            }
        return front;
    }

    double firstDistance(int x, int y) const {
        const auto crossing = [&](int nx, int ny, double h) {
            const bool inGrid = nx >= 0 && nx < width_ && ny >= 0 && ny < height_;
            if (!inGrid || inside(nx, ny) == inside(x, y)) return kNone;
            return (-value(x, y) / (value(nx, ny) - value(x, y))) * h;
        };
        const double r = crossing(x + 1, y, hx_), l = crossing(x - 1, y, hx_);
        const double u = crossing(x, y + 1, hy_), d = crossing(x, y - 1, hy_);
        double best = kNone;
        const auto offer = [&](double candidate) {
            if (candidate < best) best = candidate;
        };
        for (auto [h, v] : {std::pair{r, u}, {l, u}, {l, d}, {r, d}})
            if (v < kNone && h < kNone) offer(1.0 / std::sqrt(1.0 / (h * h) + 1.0 / (v * v)));
        for (double single : {r, u, d, l}) offer(single);
        return best;
    }

    double quadratic(double a, double b) const {
        const double wx = 1.0 / (hx_ * hx_), wy = 1.0 / (hy_ * hy_);
        const double qa = wx + wy, qb = (wx * a + wy * b) * -2.0, qc = a * (wx * a) + b * (wy * b) - 1.0;
        return (std::sqrt(qb * qb + qc * (qa * -4.0)) - qb) / (qa + qa);
    }

    double estimate(int x, int y, int sign) {
        const auto known = [&](int nx, int ny) {
            return nx >= 0 && nx < width_ && ny >= 0 && ny < height_ && state(index(nx, ny)) == sign;
        };
        const bool r = known(x + 1, y), l = known(x - 1, y), u = known(x, y + 1), d = known(x, y - 1);
        double best = kNone;
        const auto offer = [&](double candidate) {
            if (candidate < best) best = candidate;
        };
        const auto at = [&](int nx, int ny) { return distance(index(nx, ny)); };
        if (u && r) offer(quadratic(at(x + 1, y), at(x, y + 1)));
        if (u && l) offer(quadratic(at(x - 1, y), at(x, y + 1)));
        if (d && l) offer(quadratic(at(x - 1, y), at(x, y - 1)));
        if (d && r) offer(quadratic(at(x + 1, y), at(x, y - 1)));
        if (best < kNone) return best;
        if (r) offer(at(x + 1, y) + hx_);
        if (u) offer(at(x, y + 1) + hy_);
        if (d) offer(at(x, y - 1) + hy_);
        if (l) offer(at(x - 1, y) + hx_);
        return best;
    }

    const std::vector<double>& field_;
    int width_, height_;
    double hx_, hy_;
    std::vector<signed char> state_;
    std::vector<double> distance_;
};

}  // namespace

std::vector<double> textbookMarch(const std::vector<double>& field, int width, int height, double hx,
                                  double hy) {
    return TextbookMarch(field, width, height, hx, hy).run();
}
