#include "png_image.h"

#include <png.h>

#include <vector>

#include "failure.h"

namespace quorbin::io {

void writePng(const brin::Image<unsigned char>& image, OutputFile& out) {
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width());
    png.height = static_cast<png_uint_32>(image.height());
    png.format = image.channels() == 3 ? PNG_FORMAT_RGB : PNG_FORMAT_GRAY;
    png_alloc_size_t size = 0;
    if (png_image_write_to_memory(&png, nullptr, &size, 0, image.data(), 0, nullptr) == 0)
        throw Failure(kFailed, fmt::format("the picture cannot be written as PNG: {}", png.message));
    std::vector<unsigned char> bytes(size);
    if (png_image_write_to_memory(&png, bytes.data(), &size, 0, image.data(), 0, nullptr) == 0)
        throw Failure(kFailed, fmt::format("the picture cannot be written as PNG: {}", png.message));
    out.write(bytes.data(), size);
}

}  // namespace quorbin::io
