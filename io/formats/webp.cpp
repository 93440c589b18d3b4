#include <webp/decode.h>

#include <memory>

#include "../channels.h"
#include "../failure.h"
#include "../sample_types.h"
#include "formats.h"

namespace quorbin::io {

namespace {

bool matches(InputFile& file) {
    const Bytes& bytes = file.start();
    return bytes.size() > 12 && startsWith(bytes, "RIFF") && std::memcmp(bytes.data() + 8, "WEBP", 4) == 0;
}

struct FreePixels {
    void operator()(std::uint8_t* pixels) const { WebPFree(pixels); }
};

Image read(InputFile& file, const ReadOptions& options) {
    const Bytes& bytes = file.all();
    WebPBitstreamFeatures features;
    if (WebPGetFeatures(bytes.data(), bytes.size(), &features) != VP8_STATUS_OK)
        refuse("is no WebP that can be read; give the whole file");
    if (features.has_animation != 0) refuse("is a film; save one picture of it as PNG");
    ChannelLayout layout{features.has_alpha != 0 ? 4U : 3U, true};
    if (layout.count == 4) layout.alpha = 3;
    ChannelChoice choice(layout, options.channel);
    int width = 0, height = 0;
    const auto decode = layout.alpha ? WebPDecodeRGBA : WebPDecodeRGB;
    const std::unique_ptr<std::uint8_t, FreePixels> pixels(
        decode(bytes.data(), bytes.size(), &width, &height));
    if (!pixels) refuse("is no WebP that can be read; give the whole file");
    Image image;
    setPictureSize(image, width, height);
    const auto across = static_cast<std::size_t>(width);
    std::vector<double> row(across * layout.count);
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
        decodeSamples({'u', 1}, pixels.get() + y * row.size(), row.size(), row.data());
        choice.take(row.data(), across, image.samples.data() + y * across);
    }
    choice.note(image);
    return image;
}

}  // namespace

Format webpFormat() {
    Format format{"WebP", "webp"};
    format.holds = Holds::kPictures;
    format.takesChannel = true;
    format.matches = matches;
    format.read = read;
    return format;
}

}  // namespace quorbin::io
