#include "packed_picture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace quorbin::io {

namespace {

/// Whether a type keeps a value, the sign of a zero included.
template <class Sample>
bool keeps(double value) {
    if constexpr (std::is_integral_v<Sample>)
        return value >= 0 && value <= std::numeric_limits<Sample>::max() &&
               static_cast<double>(static_cast<Sample>(value)) == value &&
               !(value == 0 && std::signbit(value));
    else
        return static_cast<double>(static_cast<Sample>(value)) == value;
}

}  // namespace

template <class Sample>
bool PackedRows::addAs(SampleType type, const double* row) {
    if (!std::all_of(row, row + width_, keeps<Sample>)) return false;
    Row packed{type, std::make_unique<unsigned char[]>(width_ * sizeof(Sample))};
    for (std::size_t x = 0; x < width_; ++x) {
        const auto sample = static_cast<Sample>(row[x]);
        std::memcpy(packed.bytes.get() + x * sizeof sample, &sample, sizeof sample);
    }
    rows_.push_back(std::move(packed));
    return true;
}

void PackedRows::add(const double* row) {
    if (addAs<std::uint8_t>({'u', 1}, row) || addAs<std::uint16_t>({'u', 2}, row) ||
        addAs<float>({'f', 4}, row))
        return;
    Row whole{{'f', 8}, std::make_unique<unsigned char[]>(width_ * sizeof(double))};
    std::memcpy(whole.bytes.get(), row, width_ * sizeof(double));
    rows_.push_back(std::move(whole));
}

void PackedRows::read(std::size_t y, double* out) const {
    decodeSamples(rows_[y].type, rows_[y].bytes.get(), width_, out);
}

PackedPicture packed(Image picture) {
    const auto width = static_cast<std::size_t>(picture.width);
    PackedRows rows(width);
    for (std::size_t at = 0; at < picture.samples.size(); at += width) rows.add(picture.samples.data() + at);
    std::vector<double>().swap(picture.samples);
    return {std::move(picture), std::move(rows)};
}

Image unpacked(const PackedPicture& picture) {
    Image image = picture.image;
    image.samples.reserve(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
    picture.rows.forEach([&](const double* row, std::size_t count) {
        image.samples.insert(image.samples.end(), row, row + count);
    });
    return image;
}

}  // namespace quorbin::io
