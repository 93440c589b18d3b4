#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "image_io.h"

namespace quorbin::io::itk {

namespace {

std::string contentOf(const std::string& path, std::size_t most) {
    std::ifstream file(path, std::ios::binary);
    std::string content(std::min<std::size_t>(most, std::filesystem::file_size(path)), '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return content;
}

std::uint32_t numberAt(const std::string& bytes, std::size_t at, bool isLittle) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[at + (isLittle ? 3 - i : i)]);
    return number;
}

/// Looks for the element of the samples, of which icons have one of their own: the last one counts.
bool isWholeDicom(const std::string& path) {
    const std::string bytes = contentOf(path, SIZE_MAX);
    if (bytes.size() < 132 || bytes.compare(128, 4, "DICM") != 0) return true;  // another kind of file
    const std::string syntax = "1.2.840.10008.1.2.";
    const std::string head(bytes, 0, 1024);
    if (head.find(syntax + "1.99") != std::string::npos) return true;  // all of it is compressed
    const bool isLittle = head.find(syntax + "2") == std::string::npos;
    const std::string tag = isLittle ? std::string("\xe0\x7f\x10\0", 4) : std::string("\x7f\xe0\0\x10", 4);
    bool isWhole = false;
    for (std::size_t at = bytes.find(tag, 132); at != std::string::npos; at = bytes.find(tag, at)) {
        at += tag.size();
        const bool isExplicit = bytes.compare(at, 2, "OW") == 0 || bytes.compare(at, 2, "OB") == 0;
        if (isExplicit) at += 4;
        if (at + 4 > bytes.size()) return false;
        const std::uint32_t length = numberAt(bytes, at, isLittle);
        at += 4;
        if (length == 0xffffffff) {
            // In pieces, the last of which is followed by a mark.
            at = bytes.find(std::string("\xfe\xff\xdd\xe0", 4), at);
            if (at == std::string::npos) return false;
        } else if (length > bytes.size() - at) {
            return false;
        } else {
            at += length;
        }
        isWhole = true;
    }
    return isWhole;
}

bool isWholeMrc(const std::string& path, std::size_t sampleBytes) {
    constexpr std::size_t kHeader = 1024, kLengthOfMore = 92;
    const std::string header = contentOf(path, kHeader);
    if (header.size() < kHeader) return false;
    // Of a second header, in either byte order.
    const std::size_t more =
        std::min(numberAt(header, kLengthOfMore, true), numberAt(header, kLengthOfMore, false));
    return std::filesystem::file_size(path) >= kHeader + more + sampleBytes;
}

/// By the size that the header gives of compressed samples, if it does. Samples as text are not looked at.
bool isWholeMetaImage(const std::string& path, std::size_t sampleBytes) {
    const std::string header = contentOf(path, 1 << 16);
    const auto valueOf = [&](const char* name) -> std::string {
        std::size_t at = header.find(name);
        if (at == std::string::npos) return "";
        at = header.find_first_not_of(" =", at + std::strlen(name));
        const std::size_t end = header.find_first_of("\r\n", at);
        return end == std::string::npos ? "" : header.substr(at, end - at);
    };
    const std::string file = valueOf("ElementDataFile");
    const bool isText = valueOf("BinaryData") == "False", isPacked = valueOf("CompressedData") == "True";
    const std::uint64_t wanted =
        isPacked ? std::strtoull(valueOf("CompressedDataSize").c_str(), nullptr, 10) : sampleBytes;
    if (isText || file.empty()) return true;
    if (file == "LOCAL")
        return std::filesystem::file_size(path) >=
               header.find('\n', header.find("ElementDataFile")) + 1 + wanted;
    const auto beside = std::filesystem::path(path).replace_filename(file);
    return !std::filesystem::exists(beside) || std::filesystem::file_size(beside) >= wanted;
}

}  // namespace

bool isWhole(const std::string& format, const std::string& path, std::size_t sampleBytes) {
    if (format == "DICOM") return isWholeDicom(path);
    if (format == "MRC") return isWholeMrc(path, sampleBytes);
    return format != "MetaImage" || isWholeMetaImage(path, sampleBytes);
}

}  // namespace quorbin::io::itk
