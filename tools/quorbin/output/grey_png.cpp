#include <algorithm>
#include <cmath>

#include "output/png_image.h"
#include "output/writers.h"

void writeMaskPng(const Document& document, OutputFile& out) {
    writePng(document.field.getBinaryImage(), out);
}

void writeGreyPng(const Document& document, OutputFile& out) {
    const Raster& picture = *document.picture;
    brin::Image<unsigned char> grey(picture.width, picture.height, 1);
    std::transform(picture.samples.begin(), picture.samples.end(), grey.data(),
                   [](double sample) { return static_cast<unsigned char>(std::clamp(sample, 0.0, 255.0)); });
    writePng(grey, out);
}
