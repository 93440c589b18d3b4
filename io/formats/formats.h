#pragma once

#include "../format.h"

/// One function a format, each in a file of its own; the table puts them together.
namespace quorbin::io {

Format fl2dFormat();
Format fl3dFormat();
Format fr3dFormat();
Format pngFormat();
Format pnmFormat();
Format webpFormat();
Format tiffFormat();
Format npyFormat();
Format niftiFormat();
Format compressedNiftiFormat();
Format nrrdFormat();
Format metaImageFormat();
Format dicomFormat();
Format mrcFormat();
Format jpegFormat();
Format bmpFormat();
Format rawFormat();
Image decodeRaw(InputFile& file, const RawLayout& layout);
std::optional<Plane> decodeRawPlane(InputFile& file, const RawLayout& layout, const PlaneChoice& choice);
Format vtiFormat();
Format svgFormat();
Format geoJsonFormat();
Format csvFormat();
Format pdfFormat();
Format maskFormat();
Format heatFormat();
Format plyFormat();
Format stlFormat();
Format objFormat();
Format vtpFormat();

}  // namespace quorbin::io
