#pragma once

#include <tiffio.h>

#include <array>
#include <vector>

#include "../channels.h"
#include "../format.h"
#include "../input_file.h"
#include "../sample_types.h"

namespace quorbin::io {

/// The page of a TIFF that libtiff stands at: how its samples are kept.
class TiffPage {
 public:
    /// Refuses what cannot be read.
    explicit TiffPage(TIFF* tiff);

    std::uint32_t width() const { return width_; }
    std::uint32_t height() const { return height_; }
    /// What the samples of a point are once read; a palette's are the colours that it has.
    const ChannelLayout& layout() const { return layout_; }
    bool isFloatingPoint() const { return type_.isFloatingPoint(); }
    /// The number of how it is to be turned, for orient.
    std::uint16_t orientation() const { return orientation_; }
    /// Bytes of all samples.
    double size() const;
    /// Whether pages are of one kind.
    bool isLike(const TiffPage& other) const;

    /// Reads the samples row by row. channels must have been made for this layout.
    void read(ChannelChoice& channels, const TakeRow& take) const;

 private:
    void takeKind(std::uint16_t format);
    void takeColours();
    void takePalette();
    void readBlocks(ChannelChoice& channels, const TakeRow& take) const;
    void readColours(ChannelChoice& channels, const TakeRow& take) const;
    bool readBlock(std::uint32_t x, std::uint32_t y, std::uint16_t plane, Bytes& block) const;
    void decode(const unsigned char* bytes, std::size_t samples, double* out) const;
    [[noreturn]] void fail(std::uint32_t row) const;

    TIFF* tiff_;
    std::uint32_t width_ = 0, height_ = 0;
    std::uint16_t bits_ = 1, channels_ = 1, photometric_ = 0, orientation_ = ORIENTATION_TOPLEFT;
    bool isPlanar_ = false, isTiled_ = false;
    bool isConverted_ = false;  // by libtiff, to red, green, blue and alpha of 8 bits
    SampleType type_{};
    ChannelLayout layout_;
    std::vector<std::array<double, 3>> palette_;
};

}  // namespace quorbin::io
