#pragma once

#include <cassert>
#include <cstddef>
#include <vector>

namespace brin {

/// A raster image. The samples lie row by row from y = 0, in a row pixel by pixel from x = 0, and the
/// channels of a pixel side by side. A new image is all zeros. Negative sizes count as 0; sizes that do not
/// fit into memory throw std::bad_alloc or std::length_error. Copies are deep.
template <class T>
class Image {
 public:
    Image() = default;
    Image(int width, int height, int channels)
        : width_(width > 0 ? width : 0),
          height_(height > 0 ? height : 0),
          channels_(channels > 0 ? channels : 0),
          samples_(sampleCount(width_, height_, channels_)) {}

    int width() const { return width_; }
    int height() const { return height_; }
    int channels() const { return channels_; }
    T* data() { return samples_.data(); }
    const T* data() const { return samples_.data(); }

    /// Channel c of pixel (x, y); the indices are checked by an assertion only.
    T& operator()(int x, int y, int c = 0) { return samples_[index(x, y, c)]; }
    const T& operator()(int x, int y, int c = 0) const { return samples_[index(x, y, c)]; }

 private:
    /// If the product exceeds 64 bits, a number that is too large for a vector, so that it is refused.
    static std::size_t sampleCount(int width, int height, int channels) {
        const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        const auto most = static_cast<std::size_t>(-1);
        if (channels > 0 && pixels > most / static_cast<std::size_t>(channels)) return most;
        return pixels * static_cast<std::size_t>(channels);
    }

    std::size_t index(int x, int y, int c) const {
        assert(x >= 0 && x < width_ && y >= 0 && y < height_ && c >= 0 && c < channels_);
        return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                static_cast<std::size_t>(x)) *
                   static_cast<std::size_t>(channels_) +
               static_cast<std::size_t>(c);
    }

    int width_ = 0, height_ = 0, channels_ = 0;
    std::vector<T> samples_;
};

}  // namespace brin
