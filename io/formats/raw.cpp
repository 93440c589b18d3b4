#include <algorithm>

#include "../failure.h"
#include "../sample_output.h"
#include "../sample_types.h"
#include "formats.h"

namespace quorbin::io {

namespace {

SampleType typeOf(const RawLayout& layout) {
    const auto digits = std::min(layout.type.find_first_of("0123456789"), layout.type.size());
    return {layout.type.front(), std::stoul("0" + layout.type.substr(digits)) / 8};
}

Image describe(const RawLayout& layout) {
    Image image;
    describeVolume(image, layout.size[0], layout.size[1], layout.size[2]);
    image.format = "raw";
    image.isField = typeOf(layout).isFloatingPoint();
    return image;
}

}  // namespace

std::optional<Plane> decodeRawPlane(InputFile& file, const RawLayout& layout, const PlaneChoice& choice) {
    const Image volume = describe(layout);
    const std::size_t wanted =
        static_cast<std::size_t>(layout.size[0] * layout.size[1] * layout.size[2]) * typeOf(layout).size;
    if (file.size() != wanted) return std::nullopt;
    return planeOf(file, {0, typeOf(layout)}, volume, choice);
}

Image decodeRaw(InputFile& file, const RawLayout& layout) {
    const SampleType type = typeOf(layout);
    const auto points = static_cast<std::size_t>(layout.size[0] * layout.size[1] * layout.size[2]);
    const std::size_t wanted = points * type.size;
    const Bytes& bytes = file.upTo(wanted + 1);  // of which there should be none
    if (bytes.size() != wanted)
        refuse("has {}{} bytes; {} × {} × {} samples of type {} have {}",
               bytes.size() > wanted ? "at least " : "", bytes.size(), layout.size[0], layout.size[1],
               layout.size[2], layout.type, wanted);
    Image image = describe(layout);
    image.samples.resize(points);
    decodeSamples(type, bytes.data(), points, image.samples.data());
    return image;
}

Format rawFormat() {
    Format format{"raw", "raw"};
    format.writesFloats = true;
    format.writeVolume = [](const VolumeDocument& document, OutputFile& out) {
        sendSamples({document.isFloat}, document.field.data(), pointsOf(document.field),
                    [&](const void* bytes, std::size_t size) { out.write(bytes, size); });
    };
    return format;
}

}  // namespace quorbin::io
