#include <array>
#include <cmath>

#include <fmt/format.h>

#include "../sample_output.h"
#include "formats.h"
#include "vtk_arrays.h"

namespace quorbin::io {

namespace {

/// Where the image lies, as attributes: by the matrix that places it, unless that is sheared, which the
/// format cannot say.
std::string placeOf(const Placement& placement, const std::array<double, 3>& spacing) {
    const std::string inOrder = fmt::format("Spacing=\"{} {} {}\"", spacing[0], spacing[1], spacing[2]);
    std::string nowhere = "Origin=\"0 0 0\" " + inOrder;
    if (!placement.affine) return nowhere;
    const Affine& a = *placement.affine;
    std::array<double, 3> length{};
    for (std::size_t c = 0; c < 3; ++c)
        length[c] = std::sqrt(a[0][c] * a[0][c] + a[1][c] * a[1][c] + a[2][c] * a[2][c]);
    for (std::size_t c = 0; c < 3; ++c) {
        const std::size_t d = (c + 1) % 3;
        const double along = a[0][c] * a[0][d] + a[1][c] * a[1][d] + a[2][c] * a[2][d];
        constexpr double kRightAngle = 1e-5;  // matrices are kept in single precision
        if (!(length[c] > 0) || !(std::abs(along) <= kRightAngle * length[c] * length[d])) return nowhere;
    }
    std::string direction;
    for (std::size_t r = 0; r < 3; ++r)
        for (std::size_t c = 0; c < 3; ++c)
            direction += fmt::format("{}{}", direction.empty() ? "" : " ", a[r][c] / length[c]);
    return fmt::format("Origin=\"{} {} {}\" Spacing=\"{} {} {}\" Direction=\"{}\"", a[0][3], a[1][3], a[2][3],
                       length[0], length[1], length[2], direction);
}

void writeVti(const VolumeDocument& document, OutputFile& out) {
    const FullLevelSet3D& field = document.field;
    const SampleOutput samples{document.isFloat};
    const std::size_t bytes = pointsOf(field) * samples.type().size;
    const std::string extent =
        fmt::format("0 {} 0 {} 0 {}", field.getWidth() - 1, field.getHeight() - 1, field.getDepth() - 1);
    VtkArrays arrays;
    out.write(vtkFileStart("ImageData"));
    out.write(fmt::format(
        "<ImageData WholeExtent=\"{0}\" {1}>\n<Piece "
        "Extent=\"{0}\">\n<PointData Scalars=\"field\">\n",
        extent, placeOf(document.placement, {field.getXSpace(), field.getYSpace(), field.getZSpace()})));
    out.write(arrays.element(document.isFloat ? "Float32" : "Float64", "field", 1, bytes));
    out.write("</PointData>\n</Piece>\n</ImageData>\n");
    out.write(kVtkAppendedStart);
    Base64 text(out);
    VtkArrays::begin(text, bytes);
    sendSamples(samples, field.data(), pointsOf(field), [&](const void* block, std::size_t size) {
        text.add(static_cast<const char*>(block), size);
    });
    text.finish();
    out.write(kVtkFileEnd);
}

}  // namespace

Format vtiFormat() {
    Format format{"VTI", "vti"};
    format.writesFloats = true;
    format.writeVolume = writeVti;
    return format;
}

}  // namespace quorbin::io
