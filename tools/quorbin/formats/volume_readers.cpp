#include <nifti2_io.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include <quorbin3d.h>

#include "failure.h"
#include "formats/npy.h"
#include "formats/readers.h"
#include "formats/volume.h"
#include "quiet_output.h"

namespace {

void setSize(Volume& volume, long long width, long long height, long long depth) {
    const auto isUsable = [](long long n) { return n >= 1 && n <= (1 << 20); };
    if (!isUsable(width) || !isUsable(height) || !isUsable(depth) || width * height > INT_MAX / depth)
        refuse("has {} × {} × {} points; a volume has from 1 point to 2147483647", width, height, depth);
    volume.width = static_cast<int>(width);
    volume.height = static_cast<int>(height);
    volume.depth = static_cast<int>(depth);
    volume.samples.resize(static_cast<std::size_t>(width * height * depth));
}

void checkSpacing(const Volume& volume) {
    for (const double h : volume.spacing)
        if (!(h > 1e-100 && h < 1e100))
            refuse("has the spacings {}, {} and {}; they should be positive", volume.spacing[0],
                   volume.spacing[1], volume.spacing[2]);
}

Volume readFl3d(const std::string& path) {
    FullLevelSet3D field;
    {
        const QuietOutput quiet;
        if (!field.load(path.c_str())) refuse("is no whole FL3D or FR3D file; give all of it");
    }
    Volume volume;
    volume.format = "FL3D";
    setSize(volume, field.getWidth(), field.getHeight(), field.getDepth());
    volume.spacing = {field.getXSpace(), field.getYSpace(), field.getZSpace()};
    std::copy_n(field.data(), volume.samples.size(), volume.samples.begin());
    volume.isField = true;
    return volume;
}

Volume readNpyVolume(const Bytes& bytes) {
    const NpyArray array = parseNpy(bytes);
    if (array.shape.size() != 3) refuse("has {} dimensions; a volume has three", array.shape.size());
    Volume volume;
    volume.format = "NPY";
    setSize(volume, array.shape[2], array.shape[1], array.shape[0]);
    volume.samples = array.values();
    volume.isField = array.isFloatingPoint();
    return volume;
}

struct FreeNifti {
    void operator()(nifti_image* image) const { nifti_image_free(image); }
};

template <class T>
void convertSamples(const void* data, double slope, double intercept, std::vector<double>& samples) {
    const T* values = static_cast<const T*>(data);
    std::transform(values, values + samples.size(), samples.begin(),
                   [=](T value) { return slope * static_cast<double>(value) + intercept; });
}

Volume readNifti(const std::string& path) {
    nifti_set_debug_level(0);
    const std::unique_ptr<nifti_image, FreeNifti> image(nifti_image_read(path.c_str(), 1));
    if (!image || image->data == nullptr) refuse("is no whole NIfTI file; give all of it");
    for (int axis = 4; axis <= image->ndim && axis < 8; ++axis)
        if (image->dim[axis] > 1) refuse("has {} dimensions; give a volume of three", image->ndim);
    Volume volume;
    volume.format = "NIfTI";
    setSize(volume, image->nx, std::max<long long>(image->ny, 1), std::max<long long>(image->nz, 1));
    const auto usable = [](double h) { return h > 0 ? h : 1.0; };
    volume.spacing = {usable(image->dx), usable(image->dy), usable(image->dz)};
    const bool isScaled = image->scl_slope != 0;
    const double slope = isScaled ? image->scl_slope : 1, intercept = isScaled ? image->scl_inter : 0;
    const auto convert = [&](auto sample) {
        convertSamples<decltype(sample)>(image->data, slope, intercept, volume.samples);
    };
    switch (image->datatype) {
        case NIFTI_TYPE_UINT8:
            convert(std::uint8_t());
            break;
        case NIFTI_TYPE_INT8:
            convert(std::int8_t());
            break;
        case NIFTI_TYPE_UINT16:
            convert(std::uint16_t());
            break;
        case NIFTI_TYPE_INT16:
            convert(std::int16_t());
            break;
        case NIFTI_TYPE_UINT32:
            convert(std::uint32_t());
            break;
        case NIFTI_TYPE_INT32:
            convert(std::int32_t());
            break;
        case NIFTI_TYPE_FLOAT32:
            convert(float());
            break;
        case NIFTI_TYPE_FLOAT64:
            convert(double());
            break;
        default:
            refuse("holds samples of type {}; give integers or floating-point numbers",
                   nifti_datatype_string(image->datatype));
    }
    const nifti_dmat44& place = image->sform_code > 0 ? image->sto_xyz : image->qto_xyz;
    if (image->sform_code > 0 || image->qform_code > 0) {
        auto& affine = volume.affine.emplace();
        for (std::size_t row = 0; row < 3; ++row)
            for (std::size_t column = 0; column < 4; ++column) affine[row][column] = place.m[row][column];
    }
    return volume;
}

Volume readAny(const std::string& path, const Bytes& start) {
    if (startsWith(start, "FL3D") || startsWith(start, "FR3D")) return readFl3d(path);
    if (startsWith(start, "\x93NUMPY")) return readNpyVolume(readBytes(path));
    nifti_set_debug_level(0);
    if (is_nifti_file(path.c_str()) > 0) return readNifti(path);
    refuse("is of no known volume format; give NIfTI, FL3D, FR3D or a 3D NPY file");
}

}  // namespace

Volume readVolume(const std::string& path) {
    const Bytes start = readStart(path);
    try {
        Volume volume = readAny(path, start);
        checkSpacing(volume);
        if (!std::all_of(volume.samples.begin(), volume.samples.end(),
                         [](double v) { return std::isfinite(v); }))
            refuse("holds values that are not finite; replace them by numbers");
        return volume;
    } catch (const Failure& failure) {
        throw Failure(failure.status, fmt::format("{}: {}", path, failure.what()));
    }
}
