#include <nifti2_io.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "../failure.h"
#include "../quiet_output.h"
#include "../sample_types.h"
#include "formats.h"
#include "nifti_write.h"

namespace quorbin::io {

namespace {

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
            refuse("holds samples of type {}; give integers or floating-point numbers",
                   nifti_datatype_string(datatype));
    }
}

using NiftiImage = std::unique_ptr<nifti_image, FreeNifti>;

NiftiImage readHeader(const std::string& path) {
    const QuietOutput quiet(STDERR_FILENO);  // what the library has to say is no help
    nifti_set_debug_level(0);
    // 0 is Analyze, which lacks the mark alone.
    return is_nifti_file(path.c_str()) >= 0 ? NiftiImage(nifti_image_read(path.c_str(), 0)) : nullptr;
}

/// The samples as they are; the library's own reader would turn what is not finite into 0.
Bytes readSamples(const nifti_image& image, std::size_t count) {
    const std::size_t wanted = count * static_cast<std::size_t>(image.nbyper);
    constexpr std::size_t kBlock = 1 << 24;
    Bytes bytes;
    znzFile file = znzopen(image.iname, "rb", nifti_is_gzfile(image.iname));
    if (znz_isnull(file)) refuse("cannot be opened; give a file that is there");
    std::size_t got = 0;
    if (znzseek(file, static_cast<znz_off_t>(image.iname_offset), SEEK_SET) >= 0) do {
            // In blocks: a header may lie about the size.
            bytes.resize(std::min(wanted, got + kBlock));
            const std::size_t part = znzread(bytes.data() + got, 1, bytes.size() - got, file);
            got += part;
            if (got < bytes.size()) break;
        } while (got < wanted);
    Xznzclose(&file);
    if (got < wanted) refuse("ends within its samples; give the whole file");
    if (image.byteorder != nifti_short_order() && image.swapsize > 1)
        nifti_swap_Nbytes(static_cast<int64_t>(bytes.size() / static_cast<std::size_t>(image.swapsize)),
                          image.swapsize, bytes.data());
    return bytes;
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
    return has(344, "n+") || has(344, "ni") || has(4, "n+") || has(0, "\x1f\x8b") || hasNiftiName(file);
}

Image read(InputFile& file, const ReadOptions&) {
    if (file.isStream() || !hasNiftiName(file))
        refuse("seems to be NIfTI, which is read from files only whose names end in .nii or .nii.gz");
    const NiftiImage image = readHeader(file.path());
    if (!image) refuse("has a NIfTI header that cannot be read, or is not whole; give a NIfTI-1 or -2 file");
    for (int axis = 4; axis <= image->ndim && axis < 8; ++axis)
        if (image->dim[axis] > 1) refuse("has {} dimensions; give a volume of three", image->ndim);
    const long long width = image->nx, height = std::max<long long>(image->ny, 1),
                    depth = std::max<long long>(image->nz, 1);
    checkVolumeSize(width, height, depth);
    const SampleType type = typeOf(image->datatype);
    const Bytes bytes = readSamples(*image, static_cast<std::size_t>(width * height * depth));
    Image volume;
    setVolumeSize(volume, width, height, depth);
    const auto usable = [](double h) { return h > 0 ? h : 1.0; };
    volume.placement.spacing = {usable(image->dx), usable(image->dy), usable(image->dz)};
    volume.placement.lengthUnit = image->xyz_units;
    // A mask made of a field, with its header, is none.
    volume.isField = type.isFloatingPoint() && std::strstr(image->descrip, kFieldMark) != nullptr;
    decodeSamples(type, bytes.data(), volume.samples.size(), volume.samples.data());
    if (image->scl_slope != 0)
        for (double& sample : volume.samples) sample = image->scl_slope * sample + image->scl_inter;
    readPlace(*image, volume.placement);
    return volume;
}

}  // namespace

Format niftiFormat() {
    Format format{"NIfTI", "nii"};
    format.holds = Holds::kVolumes;
    format.matches = matches;
    format.read = read;
    format.writeVolume = writeNifti;
    return format;
}

Format compressedNiftiFormat() {
    Format format{"compressed NIfTI", "nii.gz"};
    format.writeVolume = writeCompressedNifti;
    return format;
}

}  // namespace quorbin::io
