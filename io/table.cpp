#include <algorithm>
#include <cctype>
#include <cmath>
#include <iterator>
#include <map>
#include <sstream>

#include "failure.h"
#include "foreign.h"
#include "format.h"
#include "format_name.h"
#include "formats/formats.h"

namespace quorbin::io {

const std::vector<Format>& formats() {
    static const std::vector<Format> all = {
        pngFormat(),  pnmFormat(),       jpegFormat(),    webpFormat(),
        bmpFormat(),  tiffFormat(),      npyFormat(),     fl2dFormat(),
        fl3dFormat(), fr3dFormat(),      niftiFormat(),   compressedNiftiFormat(),
        nrrdFormat(), metaImageFormat(), dicomFormat(),   mrcFormat(),
        rawFormat(),  svgFormat(),       geoJsonFormat(), csvFormat(),
        pdfFormat(),  maskFormat(),      heatFormat(),    vtiFormat(),
        plyFormat(),  stlFormat(),       objFormat(),     vtpFormat()};
    return all;
}

namespace {

std::vector<std::string> endingsOf(const Format& format) {
    std::istringstream text(format.endings);
    return {std::istream_iterator<std::string>(text), {}};
}

bool isReadable(const Format& format, Kind kind) {
    return format.holds == Holds::kEither ||
           format.holds == (kind == Kind::kVolume ? Holds::kVolumes : Holds::kPictures);
}

bool isWritten(const Format& format, Kind kind) {
    return kind == Kind::kPicture      ? format.writePicture != nullptr
           : kind == Kind::kMask       ? format.writesMasks && format.writePicture != nullptr
           : kind == Kind::kVolumeMask ? format.writesMasks && format.writeVolume != nullptr
           : kind == Kind::kVolume     ? format.writeVolume != nullptr
                                       : format.writeMesh != nullptr;
}

const char* nameOf(Kind kind) {
    return kind == Kind::kPicture      ? "picture"
           : kind == Kind::kMask       ? "mask"
           : kind == Kind::kVolumeMask ? "mask of a volume"
           : kind == Kind::kVolume     ? "volume"
                                       : "mesh";
}

/// "a, b or c".
std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i)
        text += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
    return text;
}

/// "a, b or c", of those in this build, and what it lacks.
template <class Is, class NameOf>
std::string listed(Is is, NameOf nameOf) {
    std::vector<std::string> there;
    std::map<std::string, std::vector<std::string>> missing;
    for (const Format& format : formats())
        if (is(format)) (format.lacks != nullptr ? missing[format.lacks] : there).push_back(nameOf(format));
    std::string text = listed(there);
    for (const auto& [library, names] : missing)
        text += fmt::format("; without {}, no {}", library, listed(names));
    return text;
}

std::string whyMissing(const Format& format) {
    std::string option = format.lacks;
    std::transform(option.begin(), option.end(), option.begin(),
                   [](unsigned char c) { return std::toupper(c); });
    return fmt::format("which this build has not, as it was made without {}; build it with -DQUORBIN_{}=ON",
                       format.lacks, option);
}

const Format& formatOf(InputFile& file) {
    const auto found = std::find_if(formats().begin(), formats().end(), [&](const Format& f) {
        return f.matches != nullptr && (!file.isFolder() || f.readsFolders) && f.matches(file);
    });
    if (found == formats().end()) {
        refuseForeign(file);
        refuse("is of no known format; give a picture ({}) or a volume ({})", namesOfReadable(Kind::kPicture),
               namesOfReadable(Kind::kVolume));
    }
    if (found->lacks != nullptr)
        refuse("{} {}, {}", file.isFolder() ? "is a folder, and read as" : "is", found->name,
               whyMissing(*found));
    return *found;
}

/// Runs work; a failure gets the name of the file.
template <class Work>
auto naming(InputFile& file, Work work) {
    try {
        return work();
    } catch (const Failure& failure) {
        throw io::naming(file.path(), failure);
    }
}

/// Looks at samples as they come: replaces what is not finite where that is asked for, and counts what
/// cannot be worked with.
class SampleCheck {
 public:
    explicit SampleCheck(const ReadOptions& options) : nan_(options.nan) {}

    void look(double* samples, std::size_t count) {
        double* const end = samples + count;
        const auto isBad = [](double value) { return !std::isfinite(value); };
        if (nan_) std::replace_if(samples, end, isBad, *nan_);
        bad_ += std::count_if(samples, end, isBad);
        huge_ += std::count_if(samples, end, [](double value) { return std::abs(value) > kLargestSample; });
    }

    void refuse() const {
        if (bad_ > 0)
            io::refuse("holds values that are not finite, {} of them; replace them by --nan VALUE", bad_);
        if (huge_ > 0)
            io::refuse("holds values beyond {}, {} of them; replace them by what they stand for",
                       kLargestSample, huge_);
    }

 private:
    std::optional<double> nan_;
    std::ptrdiff_t bad_ = 0, huge_ = 0;
};

void refuseUnusableSpacing(const Image& image) {
    for (const double h : image.placement.spacing)
        if (!(h > 1e-100 && h < 1e100))
            refuse("has the spacings {}, {} and {}; they should be positive", image.placement.spacing[0],
                   image.placement.spacing[1], image.placement.spacing[2]);
}

void refuseUnusable(Image& image, const ReadOptions& options) {
    refuseUnusableSpacing(image);
    SampleCheck check(options);
    check.look(image.samples.data(), image.samples.size());
    check.refuse();
}

/// Refuses to leave out silently what was asked for.
void refuseUseless(const ReadOptions& options, bool isFolder, const char* format, bool takesChannel,
                   bool takesFrame) {
    if (!options.channel.empty() && !takesChannel)
        refuse("is {}, without channels; leave out --channel", format);
    if (options.frame && !takesFrame) refuse("is {}, without frames; leave out --frame", format);
    if (options.series && !isFolder) refuse("is one file; leave out --series");
}

const Format& formatFor(InputFile& file, const ReadOptions& options) {
    const Format& format = formatOf(file);
    refuseUseless(options, file.isFolder(), format.name, format.takesChannel, format.takesFrame);
    return format;
}

}  // namespace

std::string namesOfReadable(Kind kind) {
    return listed([&](const Format& format) { return isReadable(format, kind); },
                  [](const Format& format) { return format.name; });
}

std::vector<std::string> listOfWritable(Kind kind) {
    std::vector<std::string> endings;
    for (const Format& format : formats())
        if (isWritten(format, kind)) endings.push_back(endingsOf(format).front());
    return endings;
}

std::string endingsOfWritable(Kind kind) {
    return listed([&](const Format& format) { return isWritten(format, kind); },
                  [](const Format& format) { return endingsOf(format).front(); });
}

std::string endingsOfFloats() {
    std::vector<std::string> endings;
    for (const Format& format : formats())
        if (format.writesFloats) endings.push_back(endingsOf(format).front());
    return listed(endings);
}

bool isVolume(InputFile& file, const ReadOptions& options) {
    return naming(file, [&] {
        const Format& format = formatFor(file, options);
        return format.holds == Holds::kVolumes ||
               (format.holds == Holds::kEither && format.holdsVolume(file, options));
    });
}

namespace {

/// Reads row by row, and tells of it.
void readRowsBy(const Format& format, InputFile& file, const ReadOptions& options, Image& image,
                const TakeRow& take) {
    int rows = 0;
    format.readRows(file, options, image, [&](const double* row) {
        take(row);
        if (options.progress && !options.progress(++rows, image.height * image.depth))
            throw Failure(kFailed, "reading was ended");
    });
}

/// Reads by a format as it is, whole or row by row.
Image readBy(const Format& format, InputFile& file, const ReadOptions& options) {
    if (format.read != nullptr) return format.read(file, options);
    Image image;
    std::size_t rows = 0;
    readRowsBy(format, file, options, image, [&](const double* row) {
        const auto width = static_cast<std::size_t>(image.width);
        if (image.samples.empty())
            image.samples.resize(width * static_cast<std::size_t>(image.height) *
                                 static_cast<std::size_t>(image.depth));
        std::copy_n(row, width, image.samples.data() + width * rows++);
    });
    return image;
}

}  // namespace

Image readImage(InputFile& file, const ReadOptions& options) {
    return naming(file, [&] {
        const Format& format = formatFor(file, options);
        Image image = readBy(format, file, options);
        image.format = format.name;
        refuseUnusable(image, options);
        return image;
    });
}

PackedPicture readPacked(InputFile& file, const ReadOptions& options) {
    if (isVolume(file, options)) refuse("{}: is a volume; quorbin slice takes a plane of it", file.path());
    return naming(file, [&] {
        const Format& format = formatFor(file, options);
        PackedPicture picture;
        Image& image = picture.image;
        if (format.read != nullptr) {
            Image whole = format.read(file, options);
            refuseUnusable(whole, options);
            picture = packed(std::move(whole));
        } else {
            SampleCheck check(options);
            std::vector<double> checked;
            readRowsBy(format, file, options, image, [&](const double* row) {
                const auto width = static_cast<std::size_t>(image.width);
                if (checked.empty()) picture.rows = PackedRows(width);
                checked.assign(row, row + width);
                check.look(checked.data(), width);
                picture.rows.add(checked.data());
            });
            refuseUnusableSpacing(image);
            check.refuse();
        }
        image.format = format.name;
        return picture;
    });
}

Image readRaw(InputFile& file, const RawLayout& layout, const ReadOptions& options) {
    return naming(file, [&] {
        refuseUseless(options, false, "raw", false, false);
        Image image = decodeRaw(file, layout);
        refuseUnusable(image, options);
        return image;
    });
}

namespace {

std::optional<Plane> usable(std::optional<Plane> plane, const ReadOptions& options) {
    if (plane) refuseUnusable(plane->picture, options);
    return plane;
}

}  // namespace

std::optional<Plane> readPlane(InputFile& file, const PlaneChoice& choice, const ReadOptions& options) {
    return naming(file, [&]() -> std::optional<Plane> {
        const Format& format = formatFor(file, options);
        if (format.readPlane == nullptr) return std::nullopt;
        std::optional<Plane> plane = usable(format.readPlane(file, choice, options), options);
        if (plane) plane->volume.format = format.name;
        return plane;
    });
}

std::optional<Plane> readRawPlane(InputFile& file, const RawLayout& layout, const PlaneChoice& choice,
                                  const ReadOptions& options) {
    return naming(file, [&] {
        refuseUseless(options, false, "raw", false, false);
        return usable(decodeRawPlane(file, layout, choice), options);
    });
}

const Format& outputFormat(Kind kind, const std::string& path, const std::string& named,
                           const std::string& usual) {
    std::string name = formatName(path, named, usual);
    // A file without an ending, a device say, gets the usual format.
    if (name.empty()) name = usual;
    for (const Format& format : formats()) {
        const std::vector<std::string> endings = endingsOf(format);
        if (!isWritten(format, kind) || std::find(endings.begin(), endings.end(), name) == endings.end())
            continue;
        if (format.lacks != nullptr)
            refuse("{}: would be {}, {}", named.empty() ? path : "--format " + named, format.name,
                   whyMissing(format));
        return format;
    }
    if (!named.empty())
        refuse("--format {}: is no format that a {} is written in; give {}", named, nameOf(kind),
               endingsOfWritable(kind));
    refuse("{}: its ending tells no format that a {} is written in; end it in one of {}, or add --format",
           path, nameOf(kind), endingsOfWritable(kind));
}

}  // namespace quorbin::io
