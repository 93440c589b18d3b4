#include <turbojpeg.h>

#include <algorithm>
#include <memory>
#include <string>

#include "../channels.h"
#include "../failure.h"
#include "../orientation.h"
#include "formats.h"

namespace quorbin::io {

namespace {

struct Close {
    void operator()(void* decoder) const { tjDestroy(decoder); }
};

Image read(InputFile& file, const ReadOptions& options) {
    const Bytes& bytes = file.all();
    const auto size = static_cast<unsigned long>(bytes.size());
    const std::unique_ptr<void, Close> decoder(tjInitDecompress());
    int width = 0, height = 0, sampling = 0, colours = 0;
    if (!decoder ||
        tjDecompressHeader3(decoder.get(), bytes.data(), size, &width, &height, &sampling, &colours) != 0)
        refuse("is not a JPEG that can be read; give the whole file");
    if (colours == TJCS_CMYK || colours == TJCS_YCCK)
        refuse("is made for printing, of CMYK; give one of RGB");
    Image image;
    setPictureSize(image, width, height);
    const bool isGrey = colours == TJCS_GRAY;
    const std::size_t channels = isGrey ? 1 : 3;
    Bytes pixels(image.samples.size() * channels);
    if (tjDecompress2(decoder.get(), bytes.data(), size, pixels.data(), width, 0, height,
                      isGrey ? TJPF_GRAY : TJPF_RGB, TJFLAG_ACCURATEDCT) != 0) {
        // Bytes between segments do no harm; of all else the library has made something up.
        const std::string fault = tjGetErrorStr2(decoder.get());
        if (fault.find("extraneous") == std::string::npos)
            refuse("is not a JPEG that can be read: {}; give the whole file", fault);
    }
    ChannelChoice choice({channels, !isGrey}, options.channel);
    std::vector<double> row(static_cast<std::size_t>(width) * channels);
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        std::copy_n(pixels.data() + y * row.size(), row.size(), row.data());
        choice.take(row.data(), static_cast<std::size_t>(width),
                    image.samples.data() + y * static_cast<std::size_t>(width));
    }
    orient(image, exifOrientation(bytes));
    return image;
}

}  // namespace

Format jpegFormat() {
    Format format{"JPEG", "jpg jpeg"};
    format.holds = Holds::kPictures;
    format.matches = [](InputFile& file) { return startsWith(file.start(), "\xff\xd8\xff"); };
    format.read = read;
    format.takesChannel = true;
    return format;
}

}  // namespace quorbin::io
