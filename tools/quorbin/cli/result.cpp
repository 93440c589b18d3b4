#include <algorithm>
#include <array>
#include <cmath>

#include "field_command.h"
#include "record.h"

namespace quorbin::tool {

Result::Result(const FieldCommand& command, Kind kind, const std::string& usualFormat)
    : format_(outputFormat(kind, command.batch->folder.empty() ? command.output : "", command.format,
                           usualFormat)),
      input_(command.input),
      file_(command.outputPath(usualFormat), command.force),
      record_(*command.record) {}

void Result::finish() {
    file_.commit();
    record_.addWritten(file_.path());
}

void Result::requireNumbers(const double* values, std::size_t count) const {
    if (!std::all_of(values, values + count, [](double value) { return std::isfinite(value); }))
        refuse(
            "{}: the result would hold values that are not finite; bring its values and spacings nearer to 1",
            input_);
}

void Result::write(const PictureDocument& document) {
    requireNumbers(document.field.data(), pointsOf(document.field));
    format_.writePicture(document, file_);
    finish();
}

void Result::write(const VolumeDocument& document) {
    requireNumbers(document.field.data(), pointsOf(document.field));
    format_.writeVolume(document, file_);
    finish();
}

void Result::write(const MeshDocument& mesh) {
    for (const auto* points : {&mesh.vertices, &mesh.normals})
        for (const brin::Vec3<double>& p : *points) requireNumbers(std::array{p.x, p.y, p.z}.data(), 3);
    format_.writeMesh(mesh, file_);
    finish();
}

}  // namespace quorbin::tool
