#pragma once

#include <optional>
#include <string>
#include <vector>

#include "documents.h"
#include "image.h"
#include "input_file.h"
#include "output_file.h"
#include "packed_picture.h"
#include "plane.h"

namespace quorbin::io {

/// What is read of a file that holds more than one thing.
struct ReadOptions {
    std::string channel;  ///< r, g, b, a, luma or a number from 0; empty: grey or luminance
    std::optional<long long> frame = std::nullopt;   ///< of a file in time, from 0
    std::optional<long long> series = std::nullopt;  ///< of a folder of DICOM files, from 0
    std::optional<double> nan = std::nullopt;        ///< in the place of values that are not finite
    /// Told of rows, where they are read one by one; may end the reading in a Failure.
    Progress progress = {};
};

using TakeRow = std::function<void(const double* row)>;

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
    bool (*holdsVolume)(InputFile& file, const ReadOptions& options) = nullptr;
    Image (*read)(InputFile& file, const ReadOptions& options) = nullptr;
    /// Instead of read, row by row: hands each row to take once the image has its size.
    void (*readRows)(InputFile& file, const ReadOptions& options, Image& image,
                     const TakeRow& take) = nullptr;
    /// Reads no more than a plane of a volume, which has been found to be one; nothing where that cannot be.
    std::optional<Plane> (*readPlane)(InputFile& file, const PlaneChoice& choice,
                                      const ReadOptions& options) = nullptr;
    bool takesChannel = false, takesFrame = false;  ///< among what is asked for when it is read

    bool readsFolders = false;  ///< with a series of files
    /// What this build was made without, "ITK" or "cairo", where it knows the format by its name alone.
    const char* lacks = nullptr;

    bool writesMasks = false;   ///< too, of what it writes: pictures, volumes
    bool writesFloats = false;  ///< where that is asked for, instead of doubles
    void (*writePicture)(const PictureDocument& document, OutputFile& out) = nullptr;
    void (*writeOutline)(const OutlineDocument& document, OutputFile& out) = nullptr;  ///< and no picture
    void (*writeVolume)(const VolumeDocument& document, OutputFile& out) = nullptr;
    void (*writeStack)(const StackDocument& document, OutputFile& out) = nullptr;
    bool drawsPixels = false;  ///< of what it writes of a picture: pixels, which are square where it is shown
    void (*writeMesh)(const MeshDocument& mesh, OutputFile& out) = nullptr;
};

/// All formats, in the order in which their readers are asked.
const std::vector<Format>& formats();

/// What can be read or written.
enum class Kind { kPicture, kVolume, kMask, kVolumeMask, kMesh };

/// The names of the formats that hold pictures or volumes, or the endings of those that are written: "PNG,
/// PGM or TIFF".
std::string namesOfReadable(Kind kind);
std::string endingsOfWritable(Kind kind);
std::vector<std::string> listOfWritable(Kind kind);

/// The same of the formats that write float32.
std::string endingsOfFloats();

/// Whether a file is a volume; reads no more of it than that takes.
bool isVolume(InputFile& file, const ReadOptions& options = {});

/// Reads a file, whose format its content tells. Refuses values that are not finite, or replaces them, and
/// values beyond kLargestSample.
Image readImage(InputFile& file, const ReadOptions& options = {});

/// The same of a picture, whose samples are never held as numbers all at once where its format can be read
/// row by row. Refuses volumes.
PackedPicture readPacked(InputFile& file, const ReadOptions& options = {});

/// Reads samples laid out as given.
Image readRaw(InputFile& file, const RawLayout& layout, const ReadOptions& options = {});

/// The same of a plane alone, whose values are the only ones that are looked at. Nothing where the file must
/// be read whole.
std::optional<Plane> readPlane(InputFile& file, const PlaneChoice& choice, const ReadOptions& options = {});
std::optional<Plane> readRawPlane(InputFile& file, const RawLayout& layout, const PlaneChoice& choice,
                                  const ReadOptions& options = {});

/// Refuses a path where this build cannot draw outlines over pictures and fields in colours.
void requireDrawing(const std::string& path);

/// The format of an output: the one named, else by the ending of the path, else (where that has none, or on
/// standard output) the usual one. Refuses what is not written so.
const Format& outputFormat(Kind kind, const std::string& path, const std::string& named,
                           const std::string& usual);

}  // namespace quorbin::io
