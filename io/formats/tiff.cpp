#include <sys/stat.h>

#include <cstring>

#include "../failure.h"
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

bool holdsVolume(InputFile& file) { return readTiffStack(openTiff(file).get()).layers > 1; }

/// One of several channels by its number; those of a page count on from one page to the next.
std::size_t pageChannel(const TiffStack& stack, std::size_t besides, std::string& channel) {
    if (stack.channels == 1) return 0;
    const std::size_t number = channelAmong(stack.channels * besides, channel);
    channel = std::to_string(number % besides);
    return number / besides;
}

void readRows(InputFile& file, const ReadOptions& options, Image& image, const TakeRow& take) {
    const Tiff tiff = openTiff(file);
    const TiffStack stack = readTiffStack(tiff.get());
    const TiffPage first(tiff.get());
    std::string channel = options.channel;
    const std::size_t inChannel = pageChannel(stack, first.layout().count, channel);
    const std::size_t frame = frameAmong(stack.frames, options.frame);
    ChannelChoice choice(first.layout(), channel);

    // Compressed samples may be few bytes, but no more than some thousand to one.
    struct stat status = {};
    if (stat(file.pathForOthers().c_str(), &status) == 0 &&
        first.size() * static_cast<double>(stack.layers) > 1e4 * static_cast<double>(status.st_size))
        refuse("is no whole TIFF file; give all of it");
    if (stack.layers > 1)
        setVolumeSizeAlone(image, first.width(), first.height(), static_cast<long long>(stack.layers));
    else
        setPictureSizeAlone(image, first.width(), first.height());
    image.placement.spacing = stack.spacing;
    image.isField = stack.isField && first.isFloatingPoint();
    for (std::size_t z = 0; z < stack.layers; ++z) {
        if (TIFFSetSubDirectory(tiff.get(), stack.page(inChannel, z, frame)) == 0)
            refuse("ends within its {} pages; give the whole file", stack.pages.size());
        const TiffPage page(tiff.get());
        if (!page.isLike(first)) refuse("has pages of different sizes or types; give a stack of one kind");
        page.read(choice, take);
    }
    choice.note(image);
}

}  // namespace

Format tiffFormat() {
    Format format{"TIFF", "tif tiff"};
    format.holds = Holds::kEither;
    format.takesChannel = format.takesFrame = true;
    format.matches = matches;
    format.holdsVolume = holdsVolume;
    format.readRows = readRows;
    format.writesMasks = format.writesFloats = true;
    format.writePicture = writeTiff;
    format.writeVolume = writeTiff;
    return format;
}

}  // namespace quorbin::io
