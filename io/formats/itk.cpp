#include <algorithm>
#include <cstring>
#include <memory>

#include "../channels.h"
#include "../failure.h"
#include "../itk/module.h"
#include "../memory_file.h"
#include "../quiet_output.h"
#include "../sample_output.h"
#include "bmp_checks.h"
#include "formats.h"

namespace quorbin::io {

namespace {

// A folder's name ends in a slash.
std::string pathOf(InputFile& file) {
    const std::string path = file.pathForOthers();
    return file.isFolder() && path.back() != '/' ? path + '/' : path;
}

itk::Header headerOf(InputFile& file, const ReadOptions& options, const char* format) {
    itk::Header header;
    std::string fault;
    const auto alone = QuietOutput::alone();
    if (!itk::module().readHeader(format, pathOf(file).c_str(), options.series.value_or(itk::kAnySeries),
                                  header, fault))
        refuse("{}", fault);
    return header;
}

Image read(InputFile& file, const ReadOptions& options, const char* format) {
    const itk::Header header = headerOf(file, options, format);
    const auto [width, height, depth] = header.size;
    const bool isVolume = header.dimensions > 2;
    if (isVolume) checkVolumeSize(width, height, depth);
    std::vector<double> samples;
    std::string fault;
    const auto alone = QuietOutput::alone();
    if (!itk::module().readSamples(format, header, samples, fault)) refuse("{}", fault);
    const auto components = static_cast<std::size_t>(header.components);
    Image image;
    if (isVolume)
        setVolumeSize(image, width, height, depth);
    else
        setPictureSize(image, width, height);
    if (components > 1 || !options.channel.empty()) {
        ChannelLayout layout{components, components == 3 || components == 4};
        if (components == 4) layout.alpha = 3;
        ChannelChoice choice(layout, options.channel);
        choice.take(samples.data(), samples.size() / components, image.samples.data());
        choice.note(image);
    } else {
        image.samples = std::move(samples);
    }
    image.isField = header.isFloating && header.mark == kFieldMark;
    image.placement = header.placement;
    return image;
}

void write(const VolumeDocument& document, OutputFile& out, const char* format) {
    const FullLevelSet3D& field = document.field;
    Placement placement = document.placement;
    placement.spacing = {field.getXSpace(), field.getYSpace(), field.getZSpace()};
    Bytes mask;
    const SampleOutput samples{false, document.isMask ? std::uint8_t{1} : std::uint8_t{0}};
    if (document.isMask)
        sendSamples(samples, field.data(), pointsOf(field), [&](const void* bytes, std::size_t count) {
            const auto* from = static_cast<const unsigned char*>(bytes);
            mask.insert(mask.end(), from, from + count);
        });
    const itk::Volume volume{{field.getWidth(), field.getHeight(), field.getDepth()},
                             document.isMask ? static_cast<const void*>(mask.data()) : field.data(),
                             document.isMask,
                             placement,
                             document.isMask ? nullptr : kFieldMark};
    const MemoryFile file;
    std::string fault;
    const auto alone = QuietOutput::alone();
    if (!itk::module().write(format, file.path().c_str(), volume, fault))
        throw Failure(kFailed, fmt::format("the volume cannot be written as {}", format));
    file.forEachBlock([&](const char* bytes, std::size_t count) { out.write(bytes, count); });
}

bool hasAt(InputFile& file, std::size_t at, const char* magic) {
    const Bytes& start = file.start();
    const std::size_t length = std::strlen(magic);
    return start.size() >= at + length && std::memcmp(start.data() + at, magic, length) == 0;
}

/// A format that ITK reads. Name is that of the table, by which the module knows it.
template <const char* kName>
Format itkFormat(const char* endings, Holds holds, bool (*matches)(InputFile&)) {
    Format format{kName, endings};
    format.holds = holds;
    format.takesChannel = true;
    format.matches = matches;
    format.holdsVolume = [](InputFile& file, const ReadOptions& options) {
        return headerOf(file, options, kName).dimensions > 2;
    };
    format.read = [](InputFile& file, const ReadOptions& options) { return read(file, options, kName); };
#ifndef QUORBIN_HAS_ITK
    format.lacks = "ITK";
#endif
    return format;
}

template <const char* kName>
Format writtenItkFormat(const char* endings, bool (*matches)(InputFile&)) {
    Format format = itkFormat<kName>(endings, Holds::kEither, matches);
    format.writesMasks = true;
    format.writeVolume = [](const VolumeDocument& document, OutputFile& out) { write(document, out, kName); };
    return format;
}

constexpr char kNrrd[] = "NRRD", kMetaImage[] = "MetaImage", kDicom[] = "DICOM", kMrc[] = "MRC",
               kBmp[] = "BMP";

}  // namespace

Format nrrdFormat() {
    return writtenItkFormat<kNrrd>("nrrd nhdr", [](InputFile& file) { return hasAt(file, 0, "NRRD"); });
}

Format metaImageFormat() {
    return writtenItkFormat<kMetaImage>("mha mhd", [](InputFile& file) {
        return hasAt(file, 0, "ObjectType") || hasAt(file, 0, "NDims") || file.hasEnding("mha") ||
               file.hasEnding("mhd");
    });
}

Format dicomFormat() {
    Format format = itkFormat<kDicom>("dcm", Holds::kEither, [](InputFile& file) {
        return file.isFolder() || hasAt(file, 128, "DICM") || file.hasEnding("dcm");
    });
    format.readsFolders = true;
    return format;
}

Format mrcFormat() {
    return itkFormat<kMrc>("mrc", Holds::kEither,
                           [](InputFile& file) { return hasAt(file, 208, "MAP") || file.hasEnding("mrc"); });
}

Format bmpFormat() {
    Format format =
        itkFormat<kBmp>("bmp", Holds::kPictures, [](InputFile& file) { return isBmp(file.start()); });
    format.read = [](InputFile& file, const ReadOptions& options) {
        refuseOddBmp(file.all());
        return read(file, options, kBmp);
    };
    return format;
}

}  // namespace quorbin::io
