#include "../failure.h"
#include "../format.h"
#include "drawing.h"

namespace quorbin::io {

void requireDrawing(const std::string& path) {
    refuse(
        "{}: would be drawn by cairo, without which this build was made; write SVG, a mask or numbers, or "
        "build it "
        "with -DQUORBIN_CAIRO=ON",
        path);
}

void drawPng(const PictureDocument&, OutputFile& out) { requireDrawing(out.path()); }
void drawPdf(const PictureDocument&, OutputFile& out) { requireDrawing(out.path()); }

}  // namespace quorbin::io
