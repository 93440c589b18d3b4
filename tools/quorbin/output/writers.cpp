#include "output/writers.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>

#include <fmt/format.h>

#include "failure.h"

namespace {

constexpr Writer kWriters[] = {{"fl2d", writeFl2d},       {"npy", writeNpy},        {"svg", writeSvg},
                               {"geojson", writeGeoJson}, {"json", writeGeoJson},   {"csv", writeCsv},
                               {"png", writePicturePng},  {"pdf", writePicturePdf}, {"mask", writeMaskPng}};

const Writer* find(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
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
    if (!format.empty()) {
        if (const Writer* writer = find(format)) return *writer;
        refuse("--format {}: is not known; give {}", format, kNames);
    }
    if (path == "-") return *find(usual);
    const std::string file = path.substr(path.find_last_of('/') + 1);
    const std::size_t dot = file.find_last_of('.');
    if (dot != std::string::npos)
        if (const Writer* writer = find(file.substr(dot + 1))) return *writer;
    // A file without an ending of ours, a device say, gets the usual format only if it has no ending at all.
    if (dot == std::string::npos) return *find(usual);
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
    std::string header = fmt::format("{{'descr': '<f8', 'fortran_order': False, 'shape': ({}, {}), }}",
                                     field.getHeight(), field.getWidth());
    constexpr std::size_t kPreamble = 10, kAlignment = 64;
    header.append(kAlignment - (kPreamble + header.size() + 1) % kAlignment, ' ').append("\n");
    out.write("\x93NUMPY\x01\x00", 8);
    const auto length = static_cast<std::uint16_t>(header.size());
    out.write(&length, sizeof length);
    out.write(header);
    writeValues(field, out);
}
