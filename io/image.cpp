#include "image.h"

#include <algorithm>
#include <climits>

#include "failure.h"

namespace quorbin::io {

namespace {

void makeRoom(Image& image) {
    image.samples.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) *
                         static_cast<std::size_t>(image.depth));
}

}  // namespace

void setPictureSize(Image& image, long long width, long long height) {
    describePicture(image, width, height);
    makeRoom(image);
}

void describePicture(Image& image, long long width, long long height) {
    constexpr long long kLargest = 1 << 30;
    if (width < 1 || height < 1 || width > kLargest || height > kLargest || width > INT_MAX / height)
        refuse("has {} × {} points; a picture has from 1 point to 2147483647", width, height);
    image.isVolume = false;
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    image.depth = 1;
}

void checkVolumeSize(long long width, long long height, long long depth) {
    const auto isUsable = [](long long n) { return n >= 1 && n <= kMostAlongAnAxis; };
    if (!isUsable(width) || !isUsable(height) || !isUsable(depth) || width * height > INT_MAX / depth)
        refuse("has {} × {} × {} points; a volume has from 1 point to 2147483647", width, height, depth);
}

void setVolumeSize(Image& image, long long width, long long height, long long depth) {
    describeVolume(image, width, height, depth);
    makeRoom(image);
}

void describeVolume(Image& image, long long width, long long height, long long depth) {
    checkVolumeSize(width, height, depth);
    image.isVolume = true;
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    image.depth = static_cast<int>(depth);
}

}  // namespace quorbin::io
