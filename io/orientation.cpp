#include "orientation.h"

#include <cstring>
#include <utility>

namespace quorbin::io {

void orient(Image& image, int orientation) {
    if (!isTurned(orientation)) return;
    const auto width = static_cast<std::size_t>(image.width), height = static_cast<std::size_t>(image.height);
    const bool isTransposed = orientation >= 5;
    // Of what is stored: whether it is read from the end of its rows, and from its last row.
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBelow = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const std::size_t across = isTransposed ? height : width, down = isTransposed ? width : height;
    std::vector<double> page(width * height);
    for (std::size_t z = 0; z < static_cast<std::size_t>(image.depth); ++z) {
        double* const stored = image.samples.data() + z * page.size();
        for (std::size_t row = 0; row < down; ++row)
            for (std::size_t column = 0; column < across; ++column) {
                const std::size_t x = isTransposed ? row : column, y = isTransposed ? column : row;
                page[row * across + column] =
                    stored[(fromBelow ? height - 1 - y : y) * width + (fromRight ? width - 1 - x : x)];
            }
        std::memcpy(stored, page.data(), page.size() * sizeof(double));
    }
    if (!isTransposed) return;
    std::swap(image.width, image.height);
    std::swap(image.placement.spacing[0], image.placement.spacing[1]);
}

namespace {

/// Bytes from a place on, which ends with them.
struct Part {
    const unsigned char* at;
    std::size_t size;

    Part from(std::size_t start) const { return start < size ? Part{at + start, size - start} : Part{at, 0}; }
    /// A number of so many bytes, 0 beyond the end.
    std::size_t number(std::size_t start, std::size_t bytes, bool isLittle = false) const {
        std::size_t value = 0;
        if (start > size || size - start < bytes) return 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value = value << 8 | at[start + (isLittle ? bytes - 1 - i : i)];
        return value;
    }
};

/// Of the header of a TIFF, which is what EXIF data are.
int orientationIn(const Part& tiff) {
    constexpr std::size_t kOrientation = 0x112, kEntry = 12;
    const bool isLittle = tiff.number(0, 1) == 'I';
    const Part list = tiff.from(tiff.number(4, 4, isLittle));
    const std::size_t count = list.number(0, 2, isLittle);
    for (std::size_t i = 0; i < count; ++i)
        if (const std::size_t entry = 2 + kEntry * i; list.number(entry, 2, isLittle) == kOrientation)
            return static_cast<int>(list.number(entry + 8, 2, isLittle));
    return 1;
}

}  // namespace

int exifOrientation(const Bytes& jpeg) {
    constexpr std::size_t kExif = 0xffe1, kFirstSegment = 0xffc0, kSamples = 0xffda, kHead = 4;
    static constexpr char kMark[] = "Exif\0";  // and the zero that ends it
    for (Part rest = Part{jpeg.data(), jpeg.size()}.from(2);;) {
        const std::size_t marker = rest.number(0, 2), length = rest.number(2, 2);
        if (marker < kFirstSegment || marker == kSamples || length < 2) return 1;
        if (marker == kExif && length > sizeof kMark && rest.size > length + 2 &&
            std::memcmp(rest.at + kHead, kMark, sizeof kMark) == 0)
            return orientationIn({rest.at + kHead + sizeof kMark, length - 2 - sizeof kMark});
        rest = rest.from(2 + length);
    }
}

}  // namespace quorbin::io
