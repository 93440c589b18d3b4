#include <cstdint>
#include <cstring>

#include "failure.h"
#include "formats/readers.h"

bool isFl2d(const Bytes& bytes) { return startsWith(bytes, "FL2D"); }

Raster readFl2d(const Bytes& bytes, const std::string&) {
    constexpr std::size_t kHeader = 28;
    if (bytes.size() < kHeader) refuse("ends within its FL2D header; give the whole file");
    std::int32_t sizes[2];
    double spacings[2];
    std::memcpy(sizes, bytes.data() + 4, sizeof sizes);
    std::memcpy(spacings, bytes.data() + 12, sizeof spacings);
    Raster raster;
    setSize(raster, sizes[0], sizes[1]);
    const std::size_t points = static_cast<std::size_t>(sizes[0]) * static_cast<std::size_t>(sizes[1]);
    if ((bytes.size() - kHeader) / sizeof(double) < points)
        refuse("ends within its {} × {} values; give the whole file", sizes[0], sizes[1]);
    if (!(spacings[0] > 0 && spacings[1] > 0 && spacings[0] < 1e100 && spacings[1] < 1e100))
        refuse("has the spacings {} and {}; they should be positive", spacings[0], spacings[1]);
    raster.samples.resize(points);
    std::memcpy(raster.samples.data(), bytes.data() + kHeader, points * sizeof(double));
    raster.isField = true;
    raster.spacing = Spacing{spacings[0], spacings[1]};
    return raster;
}
