#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "../image.h"

/// What io and its module of ITK's readers and writers know of each other. The module is a library of its
/// own, opened only when a file wants it: ITK takes longer to load than all the rest. Plain data crosses
/// between them: a function that fails returns false and says why in fault, for a refusal. It throws
/// std::bad_alloc alone.
namespace quorbin::io::itk {

/// What a file holds, or a folder with a series of DICOM files.
struct Header {
    int dimensions = 0;
    std::array<long long, 3> size = {1, 1, 1};
    int components = 1;              ///< of a sample: 1, or 3 and 4 of colours
    bool isFloating = false;         ///< samples are floating-point numbers
    std::string mark;                ///< the text that says what the file holds, where its format has one
    Placement placement;             ///< in the world where x goes right, y to the front and z up
    std::vector<std::string> files;  ///< with the samples, in order along z
};

/// In the place of a series' number: the one that there is.
inline constexpr long long kAnySeries = -1;

/// A field to be written, or a mask.
struct Volume {
    std::array<long long, 3> size;
    const void* samples;  ///< doubles, or bytes of a mask
    bool isMask;
    const Placement& placement;
    const char* mark;  ///< the text that says what it is, if there is one
};

struct Module {
    /// Reads a header; format is one of the names in the table, path that of a file or a folder,
    /// and series the number of what is read of a folder.
    bool (*readHeader)(const char* format, const char* path, long long series, Header& header,
                       std::string& fault);
    /// Reads samples, with the components of each side by side. No more memory is used than the files fill,
    /// whatever the header says.
    bool (*readSamples)(const char* format, const Header& header, std::vector<double>& samples,
                        std::string& fault);
    bool (*write)(const char* format, const char* path, const Volume& volume, std::string& fault);
};

/// The one symbol that is looked up in the module, a Module.
inline constexpr char kModuleSymbol[] = "quorbinItkModule";

/// Opens the module at the first call; refuses where it cannot be opened.
const Module& module();

}  // namespace quorbin::io::itk
