#include <algorithm>
#include <cstdint>
#include <cstring>
#include <regex>

#include "failure.h"
#include "formats/readers.h"

namespace {

struct Header {
    char kind;
    std::size_t itemSize;
    bool isBigEndian, isFortran;
    long long rows, columns;
    std::size_t dataStart;
};

Header parseHeader(const Bytes& bytes) {
    if (bytes.size() < 12) refuse("ends within its NPY header; give the whole file");
    const bool isVersion1 = bytes[6] == 1;
    const std::size_t lengthBytes = isVersion1 ? 2 : 4;
    std::size_t length = 0;
    for (std::size_t i = lengthBytes; i-- > 0;) length = length << 8 | bytes[8 + i];
    const std::size_t start = 8 + lengthBytes;
    if (length > bytes.size() - start) refuse("ends within its NPY header; give the whole file");
    const std::string text(
        bytes.begin() + static_cast<std::ptrdiff_t>(start),
        bytes.begin() + static_cast<std::ptrdiff_t>(start + std::min<std::size_t>(length, 10000)));

    std::smatch descr, order, shape;
    if (!std::regex_search(text, descr, std::regex("'descr'\\s*:\\s*'([<>|=])([a-zA-Z])(\\d{1,3})'")) ||
        !std::regex_search(text, order, std::regex("'fortran_order'\\s*:\\s*(True|False)")) ||
        !std::regex_search(text, shape, std::regex("'shape'\\s*:\\s*\\(([^)]*)\\)")))
        refuse("has an NPY header that cannot be read; give an array of plain numbers");
    std::smatch sizes;
    const std::string shapeText = shape[1];
    if (!std::regex_match(shapeText, sizes, std::regex("\\s*(\\d{1,10})\\s*,\\s*(\\d{1,10})\\s*,?\\s*")))
        refuse("has the shape ({}); give an array of two dimensions", shapeText);
    return {descr[2].str()[0],    static_cast<std::size_t>(std::stoi(descr[3])),
            descr[1] == ">",      order[1] == "True",
            std::stoll(sizes[1]), std::stoll(sizes[2]),
            start + length};
}

template <class T>
double valueAt(const unsigned char* item) {
    T value;
    std::memcpy(&value, item, sizeof value);
    return static_cast<double>(value);
}

using Decode = double (*)(const unsigned char*);

Decode decoderOf(char kind, std::size_t size) {
    switch (kind) {
        case 'f':
            return size == 8 ? valueAt<double> : size == 4 ? valueAt<float> : nullptr;
        case 'b':
            return size == 1 ? valueAt<std::uint8_t> : nullptr;
        case 'u':
            return size == 1   ? valueAt<std::uint8_t>
                   : size == 2 ? valueAt<std::uint16_t>
                   : size == 4 ? valueAt<std::uint32_t>
                   : size == 8 ? valueAt<std::uint64_t>
                               : nullptr;
        case 'i':
            return size == 1   ? valueAt<std::int8_t>
                   : size == 2 ? valueAt<std::int16_t>
                   : size == 4 ? valueAt<std::int32_t>
                   : size == 8 ? valueAt<std::int64_t>
                               : nullptr;
        default:
            return nullptr;
    }
}

}  // namespace

bool isNpy(const Bytes& bytes) { return startsWith(bytes, "\x93NUMPY"); }

Raster readNpy(const Bytes& bytes, const std::string&) {
    const Header header = parseHeader(bytes);
    const Decode decode = decoderOf(header.kind, header.itemSize);
    if (decode == nullptr)
        refuse("holds numbers of type {}{}; give bool, integers, float32 or float64", header.kind,
               header.itemSize);
    Raster raster;
    setSize(raster, header.columns, header.rows);
    const std::size_t points =
        static_cast<std::size_t>(header.rows) * static_cast<std::size_t>(header.columns);
    if ((bytes.size() - header.dataStart) / header.itemSize < points)
        refuse("ends within its {} × {} values; give the whole file", header.columns, header.rows);
    raster.isField = header.kind == 'f';
    raster.samples.resize(points);
    unsigned char item[8];
    for (std::size_t i = 0; i < points; ++i) {
        const unsigned char* at = bytes.data() + header.dataStart + i * header.itemSize;
        std::copy_n(at, header.itemSize, item);
        if (header.isBigEndian) std::reverse(item, item + header.itemSize);
        const auto rows = static_cast<std::size_t>(header.rows),
                   columns = static_cast<std::size_t>(header.columns);
        raster.samples[header.isFortran ? i % rows * columns + i / rows : i] = decode(item);
    }
    return raster;
}
