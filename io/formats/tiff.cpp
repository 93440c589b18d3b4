#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "../failure.h"
#include "../orientation.h"
#include "formats.h"
#include "tiff_page.h"
#include "tiff_stack.h"
#include "tiff_write.h"

namespace quorbin::io {

namespace {

bool matches(InputFile& file) {
    const Bytes& bytes = file.start();
    constexpr std::size_t kMagic = 4;
    return bytes.size() > kMagic &&
           (std::memcmp(bytes.data(), "II*", kMagic) == 0 ||
            std::memcmp(bytes.data(), "MM\0*", kMagic) == 0 ||
            std::memcmp(bytes.data(), "II+", kMagic) == 0 || std::memcmp(bytes.data(), "MM\0+", kMagic) == 0);
}

bool holdsVolume(InputFile& file, const ReadOptions&) {
    return readTiffStack(openTiff(file).get()).layers > 1;
}

/// One of several channels by its number; those of a page count on from one page to the next.
std::size_t pageChannel(const TiffStack& stack, std::size_t besides, std::string& channel) {
    if (stack.channels == 1) return 0;
    const std::size_t number = channelAmong(stack.channels * besides, channel);
    channel = std::to_string(number % besides);
    return number / besides;
}

/// The pages of a file of which a picture or a volume is made.
class Pages {
 public:
    Pages(InputFile& file, const ReadOptions& options)
        : tiff_(openTiff(file)), stack_(readTiffStack(tiff_.get())), first_(tiff_.get()) {
        std::string channel = options.channel;
        inChannel_ = pageChannel(stack_, first_.layout().count, channel);
        frame_ = frameAmong(stack_.frames, options.frame);
        choice_.emplace(first_.layout(), channel);
        // Compressed samples may be few bytes, but no more than some thousand to one.
        struct stat status = {};
        if (stat(file.pathForOthers().c_str(), &status) == 0 &&
            first_.size() * static_cast<double>(stack_.layers) > 1e4 * static_cast<double>(status.st_size))
            refuse("is no whole TIFF file; give all of it");
    }

    /// What it is, without samples.
    Image image() const {
        Image image;
        if (layers() > 1)
            describeVolume(image, first_.width(), first_.height(), static_cast<long long>(layers()));
        else
            describePicture(image, first_.width(), first_.height());
        image.placement.spacing = stack_.spacing;
        image.isField = stack_.isField && first_.isFloatingPoint();
        return image;
    }

    std::size_t layers() const { return stack_.layers; }

    void read(std::size_t layer, const TakeRow& take) {
        if (TIFFSetSubDirectory(tiff_.get(), stack_.page(inChannel_, layer, frame_)) == 0)
            refuse("ends within its {} pages; give the whole file", stack_.pages.size());
        const TiffPage page(tiff_.get());
        if (!page.isLike(first_)) refuse("has pages of different sizes or types; give a stack of one kind");
        page.read(*choice_, take);
    }

    int orientation() const { return first_.orientation(); }
    void note(Image& image) const { choice_->note(image); }

 private:
    Tiff tiff_;
    TiffStack stack_;
    TiffPage first_;
    std::size_t inChannel_ = 0, frame_ = 0;
    std::optional<ChannelChoice> choice_;
};

void readRows(InputFile& file, const ReadOptions& options, Image& image, const TakeRow& take) {
    Pages pages(file, options);
    image = pages.image();
    const auto readBy = [&](const TakeRow& takeStored) {
        for (std::size_t z = 0; z < pages.layers(); ++z) pages.read(z, takeStored);
        pages.note(image);
    };
    if (!isTurned(pages.orientation())) return readBy(take);
    // All of it is wanted before it can be turned.
    readBy([&](const double* row) { image.samples.insert(image.samples.end(), row, row + image.width); });
    orient(image, pages.orientation());
    const std::vector<double> turned = std::exchange(image.samples, {});
    for (std::size_t at = 0; at < turned.size(); at += static_cast<std::size_t>(image.width))
        take(turned.data() + at);
}

std::optional<Plane> planeIn(InputFile& file, const PlaneChoice& choice, const ReadOptions& options) {
    Pages pages(file, options);
    const Image volume = pages.image();
    if (!isWanted(choice, volume) || isTurned(pages.orientation())) return std::nullopt;
    Plane plane = describePlane(volume, choice);
    const auto width = static_cast<std::size_t>(volume.width),
               points = width * static_cast<std::size_t>(volume.height);
    std::vector<double> page(points);
    readPlaneBy(plane, choice.axis, [&](std::size_t first, std::size_t count, double* out) {
        auto at = page.begin();
        pages.read(first / points, [&](const double* row) { at = std::copy_n(row, width, at); });
        std::copy_n(page.data() + first % points, count, out);
    });
    pages.note(plane.volume);
    return plane;
}

}  // namespace

Format tiffFormat() {
    Format format{"TIFF", "tif tiff"};
    format.holds = Holds::kEither;
    format.takesChannel = format.takesFrame = true;
    format.matches = matches;
    format.holdsVolume = holdsVolume;
    format.readRows = readRows;
    format.readPlane = planeIn;
    format.writesMasks = format.writesFloats = true;
    format.writePicture = writeTiff;
    format.writeVolume = writeTiff;
    return format;
}

}  // namespace quorbin::io
