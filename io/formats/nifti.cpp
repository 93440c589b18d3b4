#include <nifti2_io.h>
#include <sys/stat.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "../channels.h"
#include "../failure.h"
#include "../quiet_output.h"
#include "../sample_types.h"
#include "formats.h"
#include "nifti_write.h"

namespace quorbin::io {

namespace {

constexpr char kGzipMagic[] = "\x1f\x8b";

struct FreeNifti {
    void operator()(nifti_image* image) const { nifti_image_free(image); }
};

SampleType typeOf(int datatype) {
    switch (datatype) {
        case NIFTI_TYPE_UINT8:
            return {'u', 1};
        case NIFTI_TYPE_INT8:
            return {'i', 1};
        case NIFTI_TYPE_UINT16:
            return {'u', 2};
        case NIFTI_TYPE_INT16:
            return {'i', 2};
        case NIFTI_TYPE_UINT32:
            return {'u', 4};
        case NIFTI_TYPE_INT32:
            return {'i', 4};
        case NIFTI_TYPE_UINT64:
            return {'u', 8};
        case NIFTI_TYPE_INT64:
            return {'i', 8};
        case NIFTI_TYPE_FLOAT32:
            return {'f', 4};
        case NIFTI_TYPE_FLOAT64:
            return {'f', 8};
        default:
            refuse(
                "holds samples of type {}; give integers, colours, or floating-point numbers of 32 or 64 "
                "bits",
                nifti_datatype_string(datatype));
    }
}

ChannelLayout layoutOf(int datatype) {
    if (datatype == NIFTI_TYPE_RGB24) return {3, true};
    if (datatype == NIFTI_TYPE_RGBA32) return {4, true, 3};
    return {};
}

using NiftiImage = std::unique_ptr<nifti_image, FreeNifti>;

struct CloseGzip {
    void operator()(gzFile file) const { gzclose(file); }
};

/// A file that may be compressed; one that is not is read as it is.
using MaybeCompressed = std::unique_ptr<gzFile_s, CloseGzip>;

MaybeCompressed openMaybeCompressed(const std::string& path) {
    MaybeCompressed file(gzopen(path.c_str(), "rb"));
    if (!file) refuse("{}: cannot be opened; give a file that is there", path);
    gzbuffer(file.get(), 1 << 17);
    return file;
}

/// The path of the other one of a header and its samples in two files.
std::string besides(char* found, const char* what) {
    const std::unique_ptr<char, decltype(&std::free)> path(found, &std::free);
    if (!path) refuse("has no {} beside it; give both files of it", what);
    return path.get();
}

/// The number of dimensions, which the library takes from a NIfTI-2 header without a look.
bool hasUsableDimensions(const nifti_2_header& header) {
    constexpr int kSize = sizeof header;
    int size = header.sizeof_hdr;
    std::int64_t dimensions = header.dim[0];
    if (size != kSize) {
        nifti_swap_4bytes(1, &size);
        nifti_swap_8bytes(1, &dimensions);
    }
    return size == kSize && dimensions >= 1 && dimensions <= 7;
}

NiftiImage readHeader(InputFile& file) {
    const bool isSamplesAlone = !file.isStream() && (file.hasEnding("img") || file.hasEnding("img.gz"));
    const std::string path = isSamplesAlone ? besides(nifti_findhdrname(file.path().c_str()), "header (.hdr)")
                                            : file.pathForOthers();
    char bytes[sizeof(nifti_2_header)] = {};
    const int count = gzread(openMaybeCompressed(path).get(), bytes, sizeof bytes);
    const QuietOutput quiet(STDERR_FILENO);  // what the library has to say is no help
    nifti_set_debug_level(0);
    nifti_image* image = nullptr;
    if (count >= static_cast<int>(sizeof(nifti_1_header))) {
        const int version = nifti_header_version(bytes, static_cast<std::size_t>(count));
        nifti_1_header first;
        nifti_2_header second;
        std::memcpy(&first, bytes, sizeof first);
        std::memcpy(&second, bytes, sizeof second);
        if (version == 2 && count == static_cast<int>(sizeof second) && hasUsableDimensions(second))
            image = nifti_convert_n2hdr2nim(second, nullptr);
        else if (version == 0 || version == 1)
            image = nifti_convert_n1hdr2nim(first, nullptr);
    }
    if (image != nullptr) return NiftiImage(image);
    if (startsWith(file.start(), kGzipMagic))
        refuse("is compressed and holds no NIfTI that can be read; uncompress it, or give the whole file");
    refuse("has a NIfTI header that cannot be read, or is not whole; give a NIfTI-1 or -2 file");
}

std::string pathOfSamples(const nifti_image& image, InputFile& file) {
    const bool isApart = image.nifti_type == NIFTI_FTYPE_NIFTI1_2 ||
                         image.nifti_type == NIFTI_FTYPE_NIFTI2_2 || image.nifti_type == NIFTI_FTYPE_ANALYZE;
    if (!isApart) return file.pathForOthers();
    if (file.isStream()) refuse("is a NIfTI header without its samples; give a file");
    return besides(nifti_findimgname(file.path().c_str(), image.nifti_type), "samples (.img)");
}

/// Hands count values, in blocks, to use(samples, values), from those of a place in the file. The library's
/// own reader would turn what is not finite into 0.
template <class Use>
void readSamples(const nifti_image& image, gzFile file, const SampleType& type, std::size_t skipped,
                 std::size_t count, Use use) {
    const std::size_t start = static_cast<std::size_t>(image.iname_offset) + skipped * type.size;
    bool isWhole = gzseek(file, static_cast<z_off_t>(start), SEEK_SET) >= 0;
    constexpr std::size_t kBlock = 3 << 16;  // also whole colours
    Bytes bytes(std::min(count, kBlock) * type.size);
    std::vector<double> values(std::min(count, kBlock));
    for (std::size_t done = 0; isWhole && done < count;) {
        const std::size_t some = std::min(kBlock, count - done);
        const auto wanted = static_cast<unsigned>(some * type.size);
        isWhole = gzread(file, bytes.data(), wanted) == static_cast<int>(wanted);
        if (!isWhole) break;
        if (image.byteorder != nifti_short_order() && type.size > 1)
            nifti_swap_Nbytes(static_cast<int64_t>(some), static_cast<int>(type.size), bytes.data());
        decodeSamples(type, bytes.data(), some, values.data());
        use(values.data(), some);
        done += some;
    }
    if (!isWhole) refuse("ends within its samples; give the whole file");
}

/// Refuses sizes of which no compressed file can hold so many samples, before there is room made for them.
void refuseEarlyEnd(const std::string& path, double bytes) {
    constexpr double kMostByDeflate = 1040;
    struct stat status = {};
    if (stat(path.c_str(), &status) == 0 && bytes > kMostByDeflate * static_cast<double>(status.st_size))
        refuse("ends within its samples; give the whole file");
}

void readPlace(const nifti_image& image, Placement& placement) {
    if (image.sform_code <= 0 && image.qform_code <= 0) return;
    const nifti_dmat44& place = image.sform_code > 0 ? image.sto_xyz : image.qto_xyz;
    Affine& affine = placement.affine.emplace();
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 4; ++column) {
            affine[row][column] = place.m[row][column];
            if (!std::isfinite(place.m[row][column]))
                refuse("is placed by a matrix that is not finite; mend its header");
        }
    placement.placeCode = image.sform_code > 0 ? image.sform_code : image.qform_code;
}

bool hasNiftiName(const InputFile& file) {
    return file.hasEnding("nii") || file.hasEnding("nii.gz") || file.hasEnding("hdr") ||
           file.hasEnding("img");
}

/// By the first bytes, plain or compressed, or by the name.
bool matches(InputFile& file) {
    const Bytes& start = file.start();
    const auto has = [&](std::size_t at, const char* magic) {
        return start.size() > at + 4 && std::memcmp(start.data() + at, magic, 2) == 0;
    };
    return has(344, "n+") || has(344, "ni") || has(4, "n+") || startsWith(start, kGzipMagic) ||
           hasNiftiName(file);
}

bool holdsVolume(InputFile& file, const ReadOptions&) { return readHeader(file)->nz > 1; }

/// A picture or a volume in a file that is open.
class Samples {
 public:
    Samples(InputFile& file, const ReadOptions& options)
        : header_(readHeader(file)),
          values_(static_cast<std::size_t>(sizeAlong(5))),
          choice_(layoutOf(header_->datatype), values_ > 1 ? "" : options.channel) {
        if (sizeAlong(6) * sizeAlong(7) > 1)
            refuse("has {} dimensions; give a volume, or several", header_->ndim);
        // Colours lie beside each other, other channels one after the other, after all frames.
        const auto frames = static_cast<std::size_t>(sizeAlong(4));
        const std::size_t frame = frameAmong(frames, options.frame);
        const std::size_t channel = values_ > 1 ? channelAmong(values_, options.channel) : 0;
        type_ = choice_.layout().isColour ? SampleType{'u', 1} : typeOf(header_->datatype);
        describeVolume(image_, header_->nx, sizeAlong(2), sizeAlong(3));
        points_ = static_cast<std::size_t>(image_.width) * static_cast<std::size_t>(image_.height) *
                  static_cast<std::size_t>(image_.depth);
        skipped_ = channel * frames + frame;
        path_ = pathOfSamples(*header_, file);
        refuseEarlyEnd(path_, static_cast<double>(points_ * beside() * type_.size));
        const auto usable = [](double h) { return h > 0 ? h : 1.0; };
        image_.placement.spacing = {usable(header_->dx), usable(header_->dy), usable(header_->dz)};
        image_.placement.lengthUnit = header_->xyz_units;
        // A mask made of a field, with its header, is none.
        image_.isField = type_.isFloatingPoint() && std::strstr(header_->descrip, kFieldMark) != nullptr;
        readPlace(*header_, image_.placement);
        file_ = openMaybeCompressed(path_);
    }

    /// What it is, without samples.
    const Image& image() const { return image_; }

    /// Whether its samples are all there, one after the other.
    bool isPlain() const {
        struct stat status = {};
        const auto end = static_cast<std::size_t>(header_->iname_offset) +
                         (skipped_ + 1) * points_ * beside() * type_.size;
        return gzdirect(file_.get()) != 0 && stat(path_.c_str(), &status) == 0 &&
               static_cast<std::size_t>(status.st_size) >= end;
    }

    /// Reads count samples from the first one on, in the order of the file.
    void read(std::size_t first, std::size_t count, double* out) {
        const bool isScaled = header_->scl_slope != 0 && !choice_.layout().isColour;
        readSamples(*header_, file_.get(), type_, (skipped_ * points_ + first) * beside(), count * beside(),
                    [&](const double* samples, std::size_t values) {
                        const std::size_t some = values / beside();
                        choice_.take(samples, some, out);
                        for (std::size_t i = 0; isScaled && i < some; ++i)
                            out[i] = header_->scl_slope * out[i] + header_->scl_inter;
                        out += some;
                    });
    }

    void note(Image& image) const { choice_.note(image); }

 private:
    long long sizeAlong(int axis) const {
        return axis <= header_->ndim ? std::max<long long>(header_->dim[axis], 1) : 1;
    }
    std::size_t beside() const { return choice_.layout().count; }

    NiftiImage header_;
    std::size_t values_, skipped_ = 0, points_ = 0;
    ChannelChoice choice_;
    SampleType type_{};
    std::string path_;
    Image image_;
    MaybeCompressed file_;
};

Image read(InputFile& file, const ReadOptions& options) {
    Samples samples(file, options);
    Image image = samples.image();
    if (image.depth > 1)
        setVolumeSize(image, image.width, image.height, image.depth);
    else
        setPictureSize(image, image.width, image.height);
    samples.read(0, image.samples.size(), image.samples.data());
    samples.note(image);
    return image;
}

std::optional<Plane> planeIn(InputFile& file, const PlaneChoice& choice, const ReadOptions& options) {
    Samples samples(file, options);
    if (!isWanted(choice, samples.image()) || !samples.isPlain()) return std::nullopt;
    Plane plane = describePlane(samples.image(), choice);
    readPlaneBy(plane, choice.axis,
                [&](std::size_t first, std::size_t count, double* out) { samples.read(first, count, out); });
    samples.note(plane.volume);
    return plane;
}

}  // namespace

Format niftiFormat() {
    Format format{"NIfTI", "nii"};
    format.holds = Holds::kEither;
    format.takesChannel = format.takesFrame = true;
    format.matches = matches;
    format.holdsVolume = holdsVolume;
    format.read = read;
    format.readPlane = planeIn;
    format.writesMasks = format.writesFloats = true;
    format.writeVolume = writeNifti;
    return format;
}

Format compressedNiftiFormat() {
    Format format{"compressed NIfTI", "nii.gz"};
    format.writesMasks = format.writesFloats = true;
    format.writeVolume = writeCompressedNifti;
    return format;
}

}  // namespace quorbin::io
