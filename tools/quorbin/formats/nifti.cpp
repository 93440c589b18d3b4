#include <nifti2_io.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "failure.h"
#include "formats/samples.h"
#include "formats/volume.h"

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

}  // namespace

Volume readNifti(const std::string& path) {
    nifti_set_debug_level(0);
    if (is_nifti_file(path.c_str()) <= 0)
        refuse(
            "is of no known volume format; give NIfTI, FL3D, FR3D, 3D NPY or TIFF, or say what raw samples "
            "are by "
            "--size and --type");
    const std::unique_ptr<nifti_image, FreeNifti> image(nifti_image_read(path.c_str(), 1));
    if (!image || image->data == nullptr) refuse("is no whole NIfTI file; give all of it");
    for (int axis = 4; axis <= image->ndim && axis < 8; ++axis)
        if (image->dim[axis] > 1) refuse("has {} dimensions; give a volume of three", image->ndim);
    Volume volume;
    volume.format = "NIfTI";
    setSize(volume, image->nx, std::max<long long>(image->ny, 1), std::max<long long>(image->nz, 1));
    const auto usable = [](double h) { return h > 0 ? h : 1.0; };
    volume.spacing = {usable(image->dx), usable(image->dy), usable(image->dz)};
    volume.isField = std::strstr(image->descrip, kFieldMark) != nullptr;
    decodeSamples(typeOf(image->datatype), image->data, volume.samples.size(), volume.samples.data());
    if (image->scl_slope != 0)
        for (double& sample : volume.samples) sample = image->scl_slope * sample + image->scl_inter;
    const nifti_dmat44& place = image->sform_code > 0 ? image->sto_xyz : image->qto_xyz;
    if (image->sform_code > 0 || image->qform_code > 0) {
        Affine& affine = volume.affine.emplace();
        for (std::size_t row = 0; row < 3; ++row)
            for (std::size_t column = 0; column < 4; ++column) affine[row][column] = place.m[row][column];
    }
    return volume;
}
