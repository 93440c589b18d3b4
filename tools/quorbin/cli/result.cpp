#include <algorithm>
#include <array>
#include <cmath>

#include "field_command.h"
#include "record.h"

namespace quorbin::tool {

const Format& formatOf(const FieldCommand& command, Kind kind, const std::string& usual) {
    return outputFormat(kind, command.batch->folder.empty() ? command.output : "", command.format, usual);
}

Result::Result(const FieldCommand& command, Kind kind, const std::string& usualFormat)
    : Result(command, kind, formatOf(command, kind, usualFormat), command.outputPath(usualFormat)) {}

Result::Result(const FieldCommand& command, Kind kind, const Format& format, const std::string& path)
    : format_(format),
      input_(command.input),
      file_(path, command.force),
      asFloat_(command.asFloat),
      record_(*command.record) {
    const bool isField = kind == Kind::kPicture || kind == Kind::kVolume;
    if (asFloat_ && isField && !format_.writesFloats)
        refuse("{}: --float goes with {} and not with {}; leave it out", command.output, endingsOfFloats(),
               format_.name);
}

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

void Result::write(PictureDocument document) {
    document.isFloat = asFloat_;
    requireNumbers(document.field.data(), pointsOf(document.field));
    format_.writePicture(document, file_);
    finish();
}

void Result::write(VolumeDocument document) {
    document.isFloat = asFloat_;
    requireNumbers(document.field.data(), pointsOf(document.field));
    format_.writeVolume(document, file_);
    finish();
}

void Result::write(const OutlineDocument& document) {
    format_.writeOutline(document, file_);
    finish();
}

void Result::write(const StackDocument& stack) {
    format_.writeStack(stack, file_);
    finish();
}

void Result::write(const MeshDocument& mesh) {
    for (const auto* points : {&mesh.vertices, &mesh.normals})
        for (const brin::Vec3<double>& p : *points) requireNumbers(std::array{p.x, p.y, p.z}.data(), 3);
    format_.writeMesh(mesh, file_);
    finish();
}

}  // namespace quorbin::tool
