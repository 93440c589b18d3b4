#pragma once

#include <string>
#include <vector>

#include "documents.h"
#include "image.h"
#include "input_file.h"
#include "output_file.h"

namespace quorbin::io {

/// What is read of a file that holds more than one thing.
struct ReadOptions {
    std::string channel;  ///< r, g, b or luma of a picture in colour; empty: only a grey one will do
};

/// What files of a format hold.
enum class Holds { kNothing, kPictures, kVolumes, kEither };

/// A file format, both ways. What it cannot do is null. A function that fails throws Failure with what is
/// wrong, to which the caller adds the file's name.
struct Format {
    const char* name;     ///< as texts have it
    const char* endings;  ///< of file names, with blanks between them; --format takes them too

    Holds holds = Holds::kNothing;  ///< that can be read
    /// Whether a file is of this format, by its first block or its name, and, where it may hold either,
    /// whether it holds a volume.
    bool (*matches)(InputFile& file) = nullptr;
    bool (*holdsVolume)(InputFile& file) = nullptr;
    Image (*read)(InputFile& file, const ReadOptions& options) = nullptr;

    bool readsFolders = false;  ///< with a series of files
    bool isMissing = false;     ///< in this build, which tells it by its name alone

    bool writesMasks = false;  ///< a picture, too, as white and black
    void (*writePicture)(const PictureDocument& document, OutputFile& out) = nullptr;
    void (*writeVolume)(const VolumeDocument& document, OutputFile& out) = nullptr;
    void (*writeMesh)(const MeshDocument& mesh, OutputFile& out) = nullptr;
};

/// All formats, in the order in which their readers are asked.
const std::vector<Format>& formats();

/// What can be read or written.
enum class Kind { kPicture, kVolume, kMask, kMesh };

/// The names of the formats that hold pictures or volumes, or the endings of those that are written: "PNG,
/// PGM or TIFF".
std::string namesOfReadable(Kind kind);
std::string endingsOfWritable(Kind kind);

/// Whether a file is a volume; reads no more of it than that takes.
bool isVolume(InputFile& file);

/// Reads a file, whose format its content tells. Refuses values that are not finite, or beyond
/// kLargestSample.
Image readImage(InputFile& file, const ReadOptions& options = {});

/// Reads samples laid out as given.
Image readRaw(InputFile& file, const RawLayout& layout);

/// The format of an output: the one named, else by the ending of the path, else (where that has none, or on
/// standard output) the usual one. Refuses what is not written so.
const Format& outputFormat(Kind kind, const std::string& path, const std::string& named,
                           const std::string& usual);

}  // namespace quorbin::io
