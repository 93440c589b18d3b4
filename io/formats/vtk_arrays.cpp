#include "vtk_arrays.h"

#include <fmt/format.h>

namespace quorbin::io {

namespace {

constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void appendDigits(const unsigned char* triple, std::string& text) {
    const unsigned bits = unsigned{triple[0]} << 16 | unsigned{triple[1]} << 8 | unsigned{triple[2]};
    for (int shift = 18; shift >= 0; shift -= 6) text += kDigits[bits >> shift & 63];
}

}  // namespace

void Base64::add(const void* bytes, std::size_t count) {
    pending_.append(static_cast<const char*>(bytes), count);
    if (pending_.size() > 1 << 16) flush();
}

void Base64::flush() {
    const std::size_t whole = pending_.size() / 3 * 3;
    std::string text;
    text.reserve(whole / 3 * 4);
    for (std::size_t i = 0; i < whole; i += 3)
        appendDigits(reinterpret_cast<const unsigned char*>(pending_.data() + i), text);
    out_.write(text);
    pending_.erase(0, whole);
}

void Base64::finish() {
    flush();
    if (pending_.empty()) return;
    const std::size_t left = pending_.size();
    pending_.resize(3, '\0');
    std::string text;
    appendDigits(reinterpret_cast<const unsigned char*>(pending_.data()), text);
    text.replace(left + 1, 3 - left, 3 - left, '=');
    out_.write(text);
    pending_.clear();
}

std::string VtkArrays::element(const std::string& type, const std::string& name, int components,
                               std::size_t bytes) {
    std::string text = fmt::format(
        "<DataArray type=\"{}\" Name=\"{}\" NumberOfComponents=\"{}\" format=\"appended\" offset=\"{}\"/>\n",
        type, name, components, offset_);
    offset_ += (bytes + sizeof(std::uint64_t) + 2) / 3 * 4;
    return text;
}

std::string vtkFileStart(const std::string& kind) {
    return fmt::format(
        "<?xml version=\"1.0\"?>\n<VTKFile type=\"{}\" version=\"1.0\" byte_order=\"LittleEndian\" "
        "header_type=\"UInt64\">\n",
        kind);
}

}  // namespace quorbin::io
