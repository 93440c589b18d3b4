#include "../png_image.h"
#include "drawing.h"
#include "formats.h"

namespace quorbin::io {

namespace {

Format drawnFormat(const char* name, const char* endings) {
    Format format{name, endings};
    format.drawsPixels = true;
#ifndef QUORBIN_HAS_CAIRO
    format.lacks = "cairo";
#endif
    return format;
}

}  // namespace

Format pdfFormat() {
    Format format = drawnFormat("PDF", "pdf");
    format.writePicture = drawPdf;
    return format;
}

/// A field in colours with its zero line, where a PNG would hold a mask.
Format heatFormat() {
    Format format = drawnFormat("heat", "heat");
    format.writePicture = [](const PictureDocument& document, OutputFile& out) {
        drawPng({document.field}, out);
    };
    return format;
}

/// A mask is a picture: the format is what others are told by its name, where the ending is another.
Format maskFormat() {
    Format format{"mask", "mask"};
    format.drawsPixels = true;
    format.writesMasks = true;
    format.writePicture = [](const PictureDocument& document, OutputFile& out) {
        writePng(document.field.getBinaryImage(), out);
    };
    return format;
}

}  // namespace quorbin::io
