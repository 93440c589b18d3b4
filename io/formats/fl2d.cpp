#include <cstdint>
#include <cstring>

#include "../failure.h"
#include "formats.h"

namespace quorbin::io {

namespace {

Image read(InputFile& file, const ReadOptions&) {
    const Bytes& bytes = file.all();
    constexpr std::size_t kHeader = 28;
    if (bytes.size() < kHeader) refuse("ends within its FL2D header; give the whole file");
    std::int32_t sizes[2];
    double spacings[2];
    std::memcpy(sizes, bytes.data() + 4, sizeof sizes);
    std::memcpy(spacings, bytes.data() + 12, sizeof spacings);
    const std::size_t points = static_cast<std::size_t>(sizes[0]) * static_cast<std::size_t>(sizes[1]);
    if (sizes[0] > 0 && sizes[1] > 0 && (bytes.size() - kHeader) / sizeof(double) < points)
        refuse("ends within its {} × {} values; give the whole file", sizes[0], sizes[1]);
    Image image;
    setPictureSize(image, sizes[0], sizes[1]);
    std::memcpy(image.samples.data(), bytes.data() + kHeader, points * sizeof(double));
    image.isField = true;
    image.placement.spacing = {spacings[0], spacings[1], 1};
    return image;
}

void write(const PictureDocument& document, OutputFile& out) {
    const FullLevelSet2D& field = document.field;
    const std::int32_t sizes[2] = {field.getWidth(), field.getHeight()};
    const double spacings[2] = {field.getXSpace(), field.getYSpace()};
    out.write("FL2D", 4);
    out.write(sizes, sizeof sizes);
    out.write(spacings, sizeof spacings);
    out.write(field.data(), pointsOf(field) * sizeof(double));
}

}  // namespace

Format fl2dFormat() {
    Format format{"FL2D", "fl2d"};
    format.holds = Holds::kPictures;
    format.matches = [](InputFile& file) { return startsWith(file.start(), "FL2D"); };
    format.read = read;
    format.writePicture = write;
    return format;
}

}  // namespace quorbin::io
