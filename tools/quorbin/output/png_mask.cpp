#include <png.h>

#include <vector>

#include "failure.h"
#include "output/writers.h"

void writeMaskPng(const Document& document, OutputFile& out) {
    const brin::Image<unsigned char> mask = document.field.getBinaryImage();
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(mask.width());
    image.height = static_cast<png_uint_32>(mask.height());
    image.format = PNG_FORMAT_GRAY;
    png_alloc_size_t size = 0;
    if (png_image_write_to_memory(&image, nullptr, &size, 0, mask.data(), 0, nullptr) == 0)
        throw Failure(kFailed, fmt::format("the mask cannot be written as PNG: {}", image.message));
    std::vector<unsigned char> bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, mask.data(), 0, nullptr) == 0)
        throw Failure(kFailed, fmt::format("the mask cannot be written as PNG: {}", image.message));
    out.write(bytes.data(), size);
}
