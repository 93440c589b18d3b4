#pragma once

#include <string>

#include <quorbin3d.h>

#include "formats/volume.h"
#include "output/output_file.h"

/// What a command has to write of a volume.
struct VolumeDocument {
    const FullLevelSet3D& field;
    const Volume& source;  ///< for where it lies in the world
};

/// An output format for volumes.
struct VolumeWriter {
    const char* name;  ///< for --format, and as a file's ending
    void (*write)(const VolumeDocument& document, OutputFile& out);
};

/// By --format, the ending of the path, or FL3D on standard output. Refuses what it does not know.
const VolumeWriter& volumeWriterFor(const std::string& path, const std::string& format);

/// The names of the formats, for texts.
inline constexpr char kVolumeFormats[] = "fl3d, fr3d, nii, nii.gz, npy, tif, vti or raw";

/// The number of points of a grid.
std::size_t pointsOf(const FullLevelSet3D& field);

void writeNii(const VolumeDocument& document, OutputFile& out);
void writeNiiGz(const VolumeDocument& document, OutputFile& out);
void writeTiff(const VolumeDocument& document, OutputFile& out);
void writeVti(const VolumeDocument& document, OutputFile& out);
