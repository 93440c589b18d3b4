#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "quorbin3d/differences/readers.h"
#include "quorbin3d/extraction/crossing.h"

namespace lset::detail {

/// Unit gradients at grid points, formed anew each time, as a subclass may count on.
template <class Reader>
class FreshGradients {
 public:
    explicit FreshGradients(const Reader& field) : field_(field) {}
    Vec3 operator()(const GridPoint3D& p) const { return unitGradient(field_, p.x, p.y, p.z); }
    void nextLayer() {}

 private:
    const Reader& field_;
};

/// The same of exactly the dense grid, formed once a point: those of the two layers under way are kept.
class KeptGradients {
 public:
    explicit KeptGradients(const DenseReader3D& field) : field_(field) {
        for (Layer& layer : layers_) {
            layer.gradients.resize(static_cast<std::size_t>(field.width()) *
                                   static_cast<std::size_t>(field.height()));
            layer.known.resize(layer.gradients.size());
        }
    }

    const Vec3& operator()(const GridPoint3D& p) {
        Layer& layer = layers_[static_cast<std::size_t>(p.z - z_)];
        const std::size_t i = static_cast<std::size_t>(p.y) * static_cast<std::size_t>(field_.width()) +
                              static_cast<std::size_t>(p.x);
        if (layer.known[i] == 0) {
            layer.known[i] = 1;
            layer.gradients[i] = unitGradient(field_, p.x, p.y, p.z);
            layer.used.push_back(i);
        }
        return layer.gradients[i];
    }

    void nextLayer() {
        ++z_;
        std::swap(layers_[0], layers_[1]);
        for (const std::size_t i : layers_[1].used) layers_[1].known[i] = 0;
        layers_[1].used.clear();
    }

 private:
    struct Layer {
        std::vector<Vec3> gradients;
        std::vector<char> known;
        std::vector<std::size_t> used;
    };

    const DenseReader3D& field_;
    std::array<Layer, 2> layers_;
    int z_ = 0;
};

inline FreshGradients<VirtualReader3D> gradientsOf(const VirtualReader3D& field) {
    return FreshGradients<VirtualReader3D>(field);
}
inline KeptGradients gradientsOf(const DenseReader3D& field) { return KeptGradients(field); }

}  // namespace lset::detail
