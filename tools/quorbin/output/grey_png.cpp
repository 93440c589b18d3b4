#include <png.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "failure.h"
#include "output/writers.h"

namespace {

void writePng(const brin::Image<unsigned char>& grey, OutputFile& out) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(grey.width());
    image.height = static_cast<png_uint_32>(grey.height());
    image.format = PNG_FORMAT_GRAY;
    png_alloc_size_t size = 0;
    if (png_image_write_to_memory(&image, nullptr, &size, 0, grey.data(), 0, nullptr) == 0)
        throw Failure(kFailed, fmt::format("the picture cannot be written as PNG: {}", image.message));
    std::vector<unsigned char> bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, grey.data(), 0, nullptr) == 0)
        throw Failure(kFailed, fmt::format("the picture cannot be written as PNG: {}", image.message));
    out.write(bytes.data(), size);
}

}  // namespace

void writeMaskPng(const Document& document, OutputFile& out) {
    writePng(document.field.getBinaryImage(), out);
}

void writeGreyPng(const Document& document, OutputFile& out) {
    const Raster& picture = *document.picture;
    brin::Image<unsigned char> grey(picture.width, picture.height, 1);
    std::transform(picture.samples.begin(), picture.samples.end(), grey.data(),
                   [](double sample) { return static_cast<unsigned char>(std::clamp(sample, 0.0, 255.0)); });
    writePng(grey, out);
}
