#include <cctype>
#include <climits>

#include "../failure.h"
#include "formats.h"

namespace quorbin::io {

namespace {

/// The numbers of a PGM header (and of a plain file's samples), between which there are blanks and comments.
class PgmText {
 public:
    explicit PgmText(const Bytes& bytes) : bytes_(bytes) {}

    long long number() {
        skipBlanks();
        if (at_ == bytes_.size()) refuse("ends within its PGM data; give the whole file");
        if (!std::isdigit(bytes_[at_]))
            refuse("has a '{}' where PGM has a number", static_cast<char>(bytes_[at_]));
        long long value = 0;
        for (; at_ < bytes_.size() && std::isdigit(bytes_[at_]); ++at_)
            if ((value = 10 * value + (bytes_[at_] - '0')) > (1LL << 31))
                refuse("has a number too large for PGM");
        return value;
    }

    /// One blank separates the header from binary samples.
    std::size_t binaryStart() const { return at_ + 1; }

 private:
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

bool matches(InputFile& file) {
    const Bytes& bytes = file.start();
    return bytes.size() > 2 && (startsWith(bytes, "P5") || startsWith(bytes, "P2")) &&
           (std::isspace(bytes[2]) || bytes[2] == '#');
}

Image read(InputFile& file, const ReadOptions&) {
    const Bytes& bytes = file.all();
    PgmText text(bytes);
    const long long width = text.number(), height = text.number(), largest = text.number();
    if (width < 1 || height < 1 || width > INT_MAX / height)
        refuse("has {} × {} points; a picture has from 1 point to 2147483647", width, height);
    if (largest < 1 || largest > 65535) refuse("has the largest grey {}; PGM has 1 to 65535", largest);
    const std::size_t points = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const std::size_t bytesEach = largest > 255 ? 2 : 1;
    const bool isPlain = bytes[1] == '2';
    const std::size_t start = text.binaryStart();
    const std::size_t rest = bytes.size() > start ? bytes.size() - start : 0;
    if (rest / (isPlain ? 1 : bytesEach) < (isPlain ? points / 2 : points))
        refuse("ends within its {} × {} samples; give the whole file", width, height);
    Image image;
    setPictureSize(image, width, height);
    for (std::size_t i = 0; i < points; ++i) {
        double& sample = image.samples[i];
        if (isPlain)
            sample = static_cast<double>(text.number());
        else if (bytesEach == 1)
            sample = bytes[start + i];
        else
            sample = bytes[start + 2 * i] * 256 + bytes[start + 2 * i + 1];
        if (sample > static_cast<double>(largest))
            refuse("has a sample {} above its largest grey {}", sample, largest);
    }
    return image;
}

}  // namespace

Format pgmFormat() {
    Format format{"PGM", "pgm"};
    format.holds = Holds::kPictures;
    format.matches = matches;
    format.read = read;
    return format;
}

}  // namespace quorbin::io
