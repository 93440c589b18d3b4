#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "image.h"
#include "sample_types.h"

namespace quorbin::io {

/// Rows of samples, each kept in the smallest type that holds its values to the last bit: a byte or two for
/// what pictures mostly are.
class PackedRows {
 public:
    explicit PackedRows(std::size_t width = 0) : width_(width) {}

    void add(const double* row);
    void read(std::size_t y, double* out) const;
    std::size_t count() const { return rows_.size(); }

    /// Hands all rows to take(values, count), in order.
    template <class Take>
    void forEach(Take take) const {
        std::vector<double> row(width_);
        for (std::size_t y = 0; y < rows_.size(); ++y) {
            read(y, row.data());
            take(row.data(), width_);
        }
    }

 private:
    struct Row {
        SampleType type;
        std::unique_ptr<unsigned char[]> bytes;
    };

    template <class Sample>
    bool addAs(SampleType type, const double* row);

    std::size_t width_;
    std::vector<Row> rows_;
};

/// A picture whose samples are kept so; the image has none.
struct PackedPicture {
    Image image;
    PackedRows rows;
};

PackedPicture packed(Image picture);
Image unpacked(const PackedPicture& picture);

}  // namespace quorbin::io
