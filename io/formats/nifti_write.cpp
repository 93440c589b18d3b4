#include <nifti2_io.h>
#include <zlib.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include "../failure.h"
#include "../sample_output.h"
#include "nifti_write.h"

namespace quorbin::io {

namespace {

SampleOutput samplesOf(const VolumeDocument& document) {
    return {document.isFloat, document.isMask ? std::uint8_t{1} : std::uint8_t{0}};
}

nifti_1_header headerOf(const VolumeDocument& document, const OutputFile& out) {
    const FullLevelSet3D& field = document.field;
    const int sizes[3] = {field.getWidth(), field.getHeight(), field.getDepth()};
    for (const int size : sizes)
        if (size > 32767)
            refuse("{}: NIfTI has at most 32767 points along an axis; write another format", out.path());
    const int64_t dim[8] = {3, sizes[0], sizes[1], sizes[2], 1, 1, 1, 1};
    nifti_1_header header = {};
    nifti_1_header* made = nifti_make_new_n1_header(dim, document.isMask    ? NIFTI_TYPE_UINT8
                                                         : document.isFloat ? NIFTI_TYPE_FLOAT32
                                                                            : NIFTI_TYPE_FLOAT64);
    if (made == nullptr) throw std::bad_alloc();
    header = *made;
    std::free(made);
    header.pixdim[0] = 1;
    const double spacing[3] = {field.getXSpace(), field.getYSpace(), field.getZSpace()};
    for (std::size_t axis = 0; axis < 3; ++axis) header.pixdim[axis + 1] = static_cast<float>(spacing[axis]);
    header.xyzt_units = static_cast<char>(document.placement.lengthUnit);
    std::memcpy(header.magic, "n+1", sizeof header.magic);
    header.vox_offset = 352;
    if (!document.isMask) std::strncpy(header.descrip, kFieldMark, sizeof header.descrip - 1);
    if (const auto& affine = document.placement.affine) {
        header.sform_code = static_cast<short>(document.placement.placeCode);
        float* const rows[3] = {header.srow_x, header.srow_y, header.srow_z};
        for (std::size_t r = 0; r < 3; ++r)
            for (std::size_t c = 0; c < 4; ++c) rows[r][c] = static_cast<float>((*affine)[r][c]);
    }
    return header;
}

/// Hands the bytes of the file to send(bytes, count).
template <class Send>
void sendFile(const VolumeDocument& document, const OutputFile& out, Send send) {
    const nifti_1_header header = headerOf(document, out);
    static_assert(sizeof header == 348);
    send(&header, sizeof header);
    const char noExtension[4] = {};
    send(noExtension, sizeof noExtension);
    sendSamples(samplesOf(document), document.field.data(), pointsOf(document.field), send);
}

/// A gzip stream on its way to a file.
class Gzip {
 public:
    explicit Gzip(OutputFile& out) : out_(out), compressed_(1 << 18) {
        constexpr int kWithGzipHeader = 15 + 16, kMemory = 8;
        // A field of doubles is mostly noise in its low bits: more effort gains nothing.
        if (deflateInit2(&stream_, Z_BEST_SPEED, Z_DEFLATED, kWithGzipHeader, kMemory, Z_DEFAULT_STRATEGY) !=
            Z_OK)
            throw std::bad_alloc();
    }
    ~Gzip() { deflateEnd(&stream_); }
    Gzip(const Gzip&) = delete;
    void operator=(const Gzip&) = delete;

    void add(const void* bytes, std::size_t count, bool isLast) {
        stream_.next_in = static_cast<Bytef*>(const_cast<void*>(bytes));
        stream_.avail_in = static_cast<uInt>(count);
        do {
            stream_.next_out = compressed_.data();
            stream_.avail_out = static_cast<uInt>(compressed_.size());
            deflate(&stream_, isLast ? Z_FINISH : Z_NO_FLUSH);
            out_.write(compressed_.data(), compressed_.size() - stream_.avail_out);
        } while (stream_.avail_out == 0);
    }

 private:
    OutputFile& out_;
    std::vector<Bytef> compressed_;
    z_stream stream_ = {};
};

}  // namespace

void writeNifti(const VolumeDocument& document, OutputFile& out) {
    sendFile(document, out, [&](const void* bytes, std::size_t count) { out.write(bytes, count); });
}

void writeCompressedNifti(const VolumeDocument& document, OutputFile& out) {
    Gzip gzip(out);
    sendFile(document, out, [&](const void* bytes, std::size_t count) { gzip.add(bytes, count, false); });
    gzip.add("", 0, true);
}

}  // namespace quorbin::io
