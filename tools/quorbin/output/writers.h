#pragma once

#include <string>

#include <quorbin2d.h>

#include "output/output_file.h"
#include "raster.h"

/// What a command has to write.
struct Document {
    const FullLevelSet2D& field;
    const Raster* picture = nullptr;  ///< drawn under the contour, where there is one
    bool open = false;                ///< leave outlines open at the border
    bool pictureAlone = false;        ///< PNG is the picture without the contour over it, if there is one
};

/// An output format.
struct Writer {
    const char* name;  ///< for --format, and as a file's ending
    void (*write)(const Document& document, OutputFile& out);
};

/// The format of an output: the one named, or by the ending of the path, or (on standard output) the usual
/// one. Refuses what it does not know.
const Writer& writerFor(const std::string& path, const std::string& format, const std::string& usual);

/// The same for a mask, which is PNG only.
const Writer& maskWriterFor(const std::string& path, const std::string& format);

void writeFl2d(const Document& document, OutputFile& out);
void writeNpy(const Document& document, OutputFile& out);
void writeMaskPng(const Document& document, OutputFile& out);
/// The picture alone, which must be there and of 8 bits.
void writeGreyPng(const Document& document, OutputFile& out);
void writeSvg(const Document& document, OutputFile& out);
void writeGeoJson(const Document& document, OutputFile& out);
void writeCsv(const Document& document, OutputFile& out);
/// The picture with the contour over it; without a picture the field in colours, with its zero line.
void writePicturePng(const Document& document, OutputFile& out);
void writePicturePdf(const Document& document, OutputFile& out);
