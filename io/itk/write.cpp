#include <cstring>
#include <fstream>

#include <itkMetaDataObject.h>
#include <metaImage.h>

#include "image_io.h"

namespace quorbin::io::itk {

namespace {

/// Where a volume lies in ITK's world, which goes left, to the back and up.
struct Place {
    double directions[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};  // of an axis each, of length 1
    double origin[3] = {0, 0, 0};
};

Place placeOf(const Placement& placement) {
    Place place;
    if (!placement.affine) return place;
    for (std::size_t row = 0; row < 3; ++row) {
        // 0 is added so that files do not show -0.
        const auto turned = [&](double value) { return (row < 2 ? -value : value) + 0.0; };
        const std::array<double, 4>& from = (*placement.affine)[row];
        for (std::size_t axis = 0; axis < 3; ++axis)
            place.directions[axis][row] = turned(from[axis] / placement.spacing[axis]);
        place.origin[row] = turned(from[3]);
    }
    return place;
}

void writeMetaImage(const char* path, const Volume& volume) {
    const auto [width, height, depth] = volume.size;
    const std::array<double, 3>& spacing = volume.placement.spacing;
    MetaImage image(static_cast<int>(width), static_cast<int>(height), static_cast<int>(depth), spacing[0],
                    spacing[1], spacing[2], volume.isMask ? MET_UCHAR : MET_DOUBLE, 1,
                    const_cast<void*>(volume.samples));
    const Place place = placeOf(volume.placement);
    image.TransformMatrix(&place.directions[0][0]);
    image.Offset(place.origin);
    image.SetDoublePrecision(17);
    image.BinaryData(true);
    if (volume.mark != nullptr)
        image.AddUserField(markKey("MetaImage"), MET_STRING, static_cast<int>(std::strlen(volume.mark)),
                           volume.mark, false);
    image.ElementDataFileName("LOCAL");
    std::ofstream file(path, std::ios::binary);
    if (!image.WriteStream(&file)) throw std::runtime_error("cannot be written");
    file.close();
    if (!file) throw std::runtime_error("cannot be written");
}

void writeNrrd(const char* path, const Volume& volume) {
    const auto io = imageIo("NRRD");
    io->SetFileName(path);
    io->SetNumberOfDimensions(3);
    using Type = ::itk::IOComponentEnum;
    io->SetComponentType(volume.isMask ? Type::UCHAR : Type::DOUBLE);
    io->SetPixelType(::itk::IOPixelEnum::SCALAR);
    io->SetNumberOfComponents(1);
    io->SetFileTypeToBinary();
    ::itk::ImageIORegion region(3);
    const Place place = placeOf(volume.placement);
    for (unsigned axis = 0; axis < 3; ++axis) {
        const auto size = static_cast<::itk::SizeValueType>(volume.size[axis]);
        io->SetDimensions(axis, size);
        region.SetSize(axis, size);
        io->SetSpacing(axis, volume.placement.spacing[axis]);
        const double* const direction = place.directions[axis];
        io->SetDirection(axis, std::vector<double>(direction, direction + 3));
        io->SetOrigin(axis, place.origin[axis]);
    }
    io->SetIORegion(region);
    if (volume.mark != nullptr)
        ::itk::EncapsulateMetaData<std::string>(io->GetMetaDataDictionary(), markKey("NRRD"), volume.mark);
    io->Write(volume.samples);
}

}  // namespace

bool write(const char* format, const char* path, const Volume& volume, std::string& fault) {
    return guarded(format, fault, [&] {
        std::strcmp(format, "NRRD") == 0 ? writeNrrd(path, volume) : writeMetaImage(path, volume);
        return true;
    });
}

}  // namespace quorbin::io::itk
