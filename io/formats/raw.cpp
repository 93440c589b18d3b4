#include <algorithm>

#include "../failure.h"
#include "../sample_output.h"
#include "../sample_types.h"
#include "formats.h"

namespace quorbin::io {

Image decodeRaw(InputFile& file, const RawLayout& layout) {
    const auto digits = std::min(layout.type.find_first_of("0123456789"), layout.type.size());
    const SampleType type{layout.type.front(), std::stoul("0" + layout.type.substr(digits)) / 8};
    const auto points = static_cast<std::size_t>(layout.size[0] * layout.size[1] * layout.size[2]);
    const std::size_t wanted = points * type.size;
    const Bytes& bytes = file.upTo(wanted + 1);  // of which there should be none
    if (bytes.size() != wanted)
        refuse("has {}{} bytes; {} × {} × {} samples of type {} have {}",
               bytes.size() > wanted ? "at least " : "", bytes.size(), layout.size[0], layout.size[1],
               layout.size[2], layout.type, wanted);
    Image image;
    setVolumeSize(image, layout.size[0], layout.size[1], layout.size[2]);
    decodeSamples(type, bytes.data(), image.samples.size(), image.samples.data());
    image.format = "raw";
    image.isField = type.isFloatingPoint();
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
