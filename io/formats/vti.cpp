#include <algorithm>

#include <fmt/format.h>

#include "formats.h"
#include "vtk_arrays.h"

namespace quorbin::io {

namespace {

void writeVti(const VolumeDocument& document, OutputFile& out) {
    const FullLevelSet3D& field = document.field;
    const std::size_t bytes = pointsOf(field) * sizeof(double);
    const std::string extent =
        fmt::format("0 {} 0 {} 0 {}", field.getWidth() - 1, field.getHeight() - 1, field.getDepth() - 1);
    VtkArrays arrays;
    out.write(vtkFileStart("ImageData"));
    out.write(
        fmt::format("<ImageData WholeExtent=\"{0}\" Origin=\"0 0 0\" Spacing=\"{1} {2} {3}\">\n<Piece "
                    "Extent=\"{0}\">\n<PointData Scalars=\"field\">\n",
                    extent, field.getXSpace(), field.getYSpace(), field.getZSpace()));
    out.write(arrays.element("Float64", "field", 1, bytes));
    out.write("</PointData>\n</Piece>\n</ImageData>\n");
    out.write(kVtkAppendedStart);
    Base64 text(out);
    VtkArrays::begin(text, bytes);
    constexpr std::size_t kBlock = 1 << 16;
    for (std::size_t at = 0; at < bytes; at += kBlock)
        text.add(reinterpret_cast<const char*>(field.data()) + at, std::min(kBlock, bytes - at));
    text.finish();
    out.write(kVtkFileEnd);
}

}  // namespace

Format vtiFormat() {
    Format format{"VTI", "vti"};
    format.writeVolume = writeVti;
    return format;
}

}  // namespace quorbin::io
