#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>

#include "../channels.h"
#include "../failure.h"
#include "../png_image.h"
#include "../sample_types.h"
#include "drawing.h"
#include "formats.h"

namespace quorbin::io {

namespace {

struct PngSource {
    const unsigned char* next;
    std::size_t left;
    char message[200];
};

void readSome(png_structp png, png_bytep out, png_size_t count) {
    auto& source = *static_cast<PngSource*>(png_get_io_ptr(png));
    if (count > source.left) png_error(png, "it ends too early");
    std::memcpy(out, source.next, count);
    source.next += count;
    source.left -= count;
}

[[noreturn]] void keepMessage(png_structp png, png_const_charp message) {
    auto& source = *static_cast<PngSource*>(png_get_error_ptr(png));
    std::strncpy(source.message, message, sizeof source.message - 1);
    std::longjmp(png_jmpbuf(png), 1);
}

/// A PNG being read. libpng leaves a failed call by longjmp, which must not cross a frame with destructors:
/// every step is a function of its own that holds none and returns whether it went well.
class PngFile {
 public:
    explicit PngFile(const Bytes& bytes) : source_{bytes.data(), bytes.size(), {}} {
        png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, &source_, keepMessage,
                                      [](png_structp, png_const_charp) {});
        info_ = png_ != nullptr ? png_create_info_struct(png_) : nullptr;
    }
    ~PngFile() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngFile(const PngFile&) = delete;
    void operator=(const PngFile&) = delete;

    bool readHeader() {
        if (info_ == nullptr || setjmp(png_jmpbuf(png_)) != 0) return false;
        png_set_read_fn(png_, &source_, readSome);
        png_read_info(png_, info_);
        png_set_palette_to_rgb(png_);
        if (png_get_color_type(png_, info_) == PNG_COLOR_TYPE_GRAY) png_set_expand_gray_1_2_4_to_8(png_);
        if (png_get_valid(png_, info_, PNG_INFO_tRNS) != 0) png_set_tRNS_to_alpha(png_);
        if (png_get_bit_depth(png_, info_) == 16) png_set_swap(png_);
        png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        return true;
    }
    bool readRows(png_bytep* rows) {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        png_read_image(png_, rows);
        return true;
    }
    bool readRow(png_bytep row) {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        png_read_row(png_, row, nullptr);
        return true;
    }
    bool readEnd() {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        png_read_end(png_, nullptr);
        return true;
    }

    png_uint_32 width() const { return png_get_image_width(png_, info_); }
    png_uint_32 height() const { return png_get_image_height(png_, info_); }
    bool isInterlaced() const { return png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE; }
    bool isDeep() const { return png_get_bit_depth(png_, info_) == 16; }
    std::size_t channels() const { return png_get_channels(png_, info_); }
    std::size_t rowBytes() const { return png_get_rowbytes(png_, info_); }
    [[noreturn]] void fail() const {
        refuse("is not a PNG that can be read: {}; give the whole file", source_.message);
    }

 private:
    PngSource source_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

void readRows(InputFile& input, const ReadOptions& options, Image& image, const TakeRow& take) {
    PngFile file(input.all());
    if (!file.readHeader()) file.fail();
    ChannelLayout layout{file.channels(), file.channels() >= 3};
    if (layout.count % 2 == 0) layout.alpha = layout.count - 1;
    if (file.isDeep()) layout.opaque = 65535;
    ChannelChoice choice(layout, options.channel);
    describePicture(image, file.width(), file.height());
    // Passes of interlaced rows want all of them; others come one by one.
    const std::size_t height = file.height(), held = file.isInterlaced() ? height : 1;
    Bytes pixels(file.rowBytes() * held);
    std::vector<png_bytep> rows(held);
    for (std::size_t y = 0; y < held; ++y) rows[y] = pixels.data() + y * file.rowBytes();
    if (file.isInterlaced() && !file.readRows(rows.data())) file.fail();

    const SampleType type{'u', file.isDeep() ? 2U : 1U};
    const std::size_t width = file.width();
    std::vector<double> points(width * layout.count), row(width);
    for (std::size_t y = 0; y < height; ++y) {
        if (!file.isInterlaced() && !file.readRow(rows[0])) file.fail();
        decodeSamples(type, rows[y % held], points.size(), points.data());
        choice.take(points.data(), width, row.data());
        take(row.data());
    }
    if (!file.readEnd()) file.fail();
    choice.note(image);
}

void write(const PictureDocument& document, OutputFile& out) {
    if (document.drawing == Drawing::kMask) return writePng(document.field.getBinaryImage(), out);
    if (document.drawing == Drawing::kContour || document.picture == nullptr) return drawPng(document, out);
    const Image& picture = *document.picture;
    brin::Image<unsigned char> grey(picture.width, picture.height, 1);
    std::transform(picture.samples.begin(), picture.samples.end(), grey.data(),
                   [](double sample) { return static_cast<unsigned char>(std::clamp(sample, 0.0, 255.0)); });
    writePng(grey, out);
}

}  // namespace

Format pngFormat() {
    Format format{"PNG", "png"};
    format.drawsPixels = true;
    format.holds = Holds::kPictures;
    format.takesChannel = true;
    format.matches = [](InputFile& file) { return startsWith(file.start(), "\x89PNG\r\n\x1a\n"); };
    format.readRows = readRows;
    format.writesMasks = true;
    format.writePicture = write;
    return format;
}

}  // namespace quorbin::io
