#include <cctype>
#include <climits>

#include "../channels.h"
#include "../failure.h"
#include "formats.h"

namespace quorbin::io {

namespace {

/// The numbers of a header (and of a plain file's samples), between which there are blanks and comments.
class PnmText {
 public:
    explicit PnmText(const Bytes& bytes) : bytes_(bytes) {}

    long long number() {
        requireDigit();
        long long value = 0;
        for (; at_ < bytes_.size() && std::isdigit(bytes_[at_]); ++at_)
            if ((value = 10 * value + (bytes_[at_] - '0')) > (1LL << 31))
                refuse("has a number too large for PNM");
        return value;
    }

    /// A plain bitmap's sample, which needs no blank beside it.
    bool bit() {
        requireDigit();
        if (bytes_[at_] > '1') refuse("has a '{}' where a bitmap has 0 or 1", static_cast<char>(bytes_[at_]));
        return bytes_[at_++] == '1';
    }

    /// One blank separates the header from binary samples.
    std::size_t binaryStart() const { return at_ + 1; }

 private:
    void requireDigit() {
        skipBlanks();
        if (at_ == bytes_.size()) refuse("ends within its PNM data; give the whole file");
        if (!std::isdigit(bytes_[at_]))
            refuse("has a '{}' where PNM has a number", static_cast<char>(bytes_[at_]));
    }

    void skipBlanks() {
        for (; at_ < bytes_.size(); ++at_) {
            if (bytes_[at_] == '#')
                while (at_ + 1 < bytes_.size() && bytes_[at_] != '\n') ++at_;
            else if (!std::isspace(bytes_[at_]))
                return;
        }
    }

    const Bytes& bytes_;
    std::size_t at_ = 2;
};

/// By the digit of the magic number.
struct Variant {
    bool isPlain, isBitmap;
    std::size_t channels;

    explicit Variant(unsigned char digit)
        : isPlain(digit <= '3'),
          isBitmap(digit == '1' || digit == '4'),
          channels(digit == '3' || digit == '6' ? 3 : 1) {}
};

bool matches(InputFile& file) {
    const Bytes& bytes = file.start();
    return bytes.size() > 2 && bytes[0] == 'P' && bytes[1] >= '1' && bytes[1] <= '6' &&
           (std::isspace(bytes[2]) || bytes[2] == '#');
}

Image read(InputFile& file, const ReadOptions& options) {
    const Bytes& bytes = file.all();
    const Variant variant(bytes[1]);
    PnmText text(bytes);
    const long long width = text.number(), height = text.number(),
                    largest = variant.isBitmap ? 1 : text.number();
    if (width < 1 || height < 1 || width > INT_MAX / height)
        refuse("has {} × {} points; a picture has from 1 point to 2147483647", width, height);
    if (largest < 1 || largest > 65535) refuse("has the largest grey {}; PNM has 1 to 65535", largest);
    ChannelChoice choice({variant.channels, variant.channels == 3}, options.channel);
    const auto across = static_cast<std::size_t>(width), down = static_cast<std::size_t>(height);
    const std::size_t bytesEach = largest > 255 ? 2 : 1, samples = across * variant.channels;
    const std::size_t rowBytes = variant.isBitmap ? (across + 7) / 8 : samples * bytesEach;
    const std::size_t start = text.binaryStart();
    const std::size_t rest = bytes.size() > start ? bytes.size() - start : 0;
    // A plain sample takes two bytes, with its blank, or one in a bitmap.
    if (rest < (variant.isPlain ? samples * down / 2 : rowBytes * down))
        refuse("ends within its {} × {} samples; give the whole file", width, height);
    Image image;
    setPictureSize(image, width, height);
    std::vector<double> row(samples);
    for (std::size_t y = 0; y < down; ++y) {
        const unsigned char* const in = bytes.data() + start + y * rowBytes;
        for (std::size_t i = 0; i < samples; ++i) {
            double& sample = row[i];
            if (variant.isBitmap)  // where 1 is black
                sample = (variant.isPlain ? text.bit() : (in[i / 8] >> (7 - i % 8) & 1) != 0) ? 0 : 1;
            else if (variant.isPlain)
                sample = static_cast<double>(text.number());
            else
                sample = bytesEach == 1 ? in[i] : in[2 * i] * 256 + in[2 * i + 1];
            if (sample > static_cast<double>(largest))
                refuse("has a sample {} above its largest grey {}", sample, largest);
        }
        choice.take(row.data(), across, image.samples.data() + y * across);
    }
    return image;
}

}  // namespace

Format pnmFormat() {
    Format format{"PNM", "pgm ppm pbm pnm"};
    format.holds = Holds::kPictures;
    format.takesChannel = true;
    format.matches = matches;
    format.read = read;
    return format;
}

}  // namespace quorbin::io
