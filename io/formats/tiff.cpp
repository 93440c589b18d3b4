#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <optional>
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

    /// What it is, by setSize(image, width, height, layers).
    template <class SetSize>
    Image image(SetSize setSize) const {
        Image image;
        setSize(image, first_.width(), first_.height(), static_cast<long long>(layers()));
        image.placement.spacing = stack_.spacing;
        image.isField = stack_.isField && first_.isFloatingPoint();
        return image;
    }

    std::size_t layers() const { return stack_.layers; }
    std::size_t points() const { return std::size_t{first_.width()} * first_.height(); }

    void read(std::size_t layer, double* out) {
        if (TIFFSetSubDirectory(tiff_.get(), stack_.page(inChannel_, layer, frame_)) == 0)
            refuse("ends within its {} pages; give the whole file", stack_.pages.size());
        const TiffPage page(tiff_.get());
        if (!page.isLike(first_)) refuse("has pages of different sizes or types; give a stack of one kind");
        page.read(*choice_, out);
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

Image read(InputFile& file, const ReadOptions& options) {
    Pages pages(file, options);
    Image image = pages.image([](Image& made, long long width, long long height, long long layers) {
        layers > 1 ? setVolumeSize(made, width, height, layers) : setPictureSize(made, width, height);
    });
    for (std::size_t z = 0; z < pages.layers(); ++z) pages.read(z, image.samples.data() + z * pages.points());
    pages.note(image);
    orient(image, pages.orientation());
    return image;
}

std::optional<Plane> planeIn(InputFile& file, const PlaneChoice& choice, const ReadOptions& options) {
    Pages pages(file, options);
    const Image volume = pages.image(describeVolume);
    if (!isWanted(choice, volume) || isTurned(pages.orientation())) return std::nullopt;
    Plane plane = describePlane(volume, choice);
    const std::size_t points = pages.points();
    std::vector<double> page(points);
    readPlaneBy(plane, choice.axis, [&](std::size_t first, std::size_t count, double* out) {
        pages.read(first / points, page.data());
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
    format.read = read;
    format.readPlane = planeIn;
    format.writesMasks = format.writesFloats = true;
    format.writePicture = writeTiff;
    format.writeVolume = writeTiff;
    return format;
}

}  // namespace quorbin::io
