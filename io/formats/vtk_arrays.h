#pragma once

#include <cstdint>
#include <string>

#include "../output_file.h"

namespace quorbin::io {

/// Bytes on their way to a file as base64 text.
class Base64 {
 public:
    explicit Base64(OutputFile& out) : out_(out) {}
    void add(const void* bytes, std::size_t count);
    /// Ends a text: pads it, so that another may follow.
    void finish();

 private:
    void flush();

    OutputFile& out_;
    std::string pending_;
};

/// The place of each array within the appended data of a VTK XML file, and how they are written: the number
/// of bytes before each, in one base64 text.
class VtkArrays {
 public:
    /// A DataArray element for the next array, of that many bytes.
    std::string element(const std::string& type, const std::string& name, int components, std::size_t bytes);

    /// Writes the number of bytes that precedes an array; its bytes and finish() must follow.
    static void begin(Base64& text, std::uint64_t bytes) { text.add(&bytes, sizeof bytes); }

 private:
    std::size_t offset_ = 0;
};

/// The first lines of a VTK XML file of a kind, PolyData say.
std::string vtkFileStart(const std::string& kind);

/// What stands before and after the appended arrays.
inline constexpr char kVtkAppendedStart[] = "<AppendedData encoding=\"base64\">\n_";
inline constexpr char kVtkFileEnd[] = "\n</AppendedData>\n</VTKFile>\n";

}  // namespace quorbin::io
