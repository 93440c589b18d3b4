#include "output/writers.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include <fmt/format.h>

#include "failure.h"
#include "output/format_name.h"
#include "output/npy_header.h"

namespace {

constexpr Writer kWriters[] = {{"fl2d", writeFl2d},       {"npy", writeNpy},        {"svg", writeSvg},
                               {"geojson", writeGeoJson}, {"json", writeGeoJson},   {"csv", writeCsv},
                               {"png", writePicturePng},  {"pdf", writePicturePdf}, {"mask", writeMaskPng}};

const Writer* find(const std::string& name) {
    const auto* writer = std::find_if(std::begin(kWriters), std::end(kWriters),
                                      [&](const Writer& w) { return w.name == name; });
    return writer == std::end(kWriters) ? nullptr : writer;
}

constexpr char kNames[] = "fl2d, npy, svg, geojson, csv, png, pdf or mask";

void writeValues(const FullLevelSet2D& field, OutputFile& out) {
    const std::size_t points =
        static_cast<std::size_t>(field.getWidth()) * static_cast<std::size_t>(field.getHeight());
    out.write(field.data(), points * sizeof(double));
}

}  // namespace

const Writer& writerFor(const std::string& path, const std::string& format, const std::string& usual) {
    const std::string name = formatName(path, format, usual);
    // A file without an ending, a device say, gets the usual format.
    if (const Writer* writer = find(name.empty() ? usual : name)) return *writer;
    if (!format.empty()) refuse("--format {}: is not known; give {}", format, kNames);
    refuse(
        "{}: its ending tells no format; end it in one of fl2d, npy, svg, geojson, csv, png or pdf, or add "
        "--format",
        path);
}

const Writer& maskWriterFor(const std::string& path, const std::string& format) {
    const Writer& writer = writerFor(path, format, "mask");
    if (writer.write == writeMaskPng || writer.write == writePicturePng) return *find("mask");
    refuse("{}: a mask is written as PNG; end the name in .png", path);
}

void writeFl2d(const Document& document, OutputFile& out) {
    const FullLevelSet2D& field = document.field;
    const std::int32_t sizes[2] = {field.getWidth(), field.getHeight()};
    const double spacings[2] = {field.getXSpace(), field.getYSpace()};
    out.write("FL2D", 4);
    out.write(sizes, sizeof sizes);
    out.write(spacings, sizeof spacings);
    writeValues(field, out);
}

void writeNpy(const Document& document, OutputFile& out) {
    const FullLevelSet2D& field = document.field;
    out.write(npyHeader(fmt::format("{}, {}", field.getHeight(), field.getWidth())));
    writeValues(field, out);
}
