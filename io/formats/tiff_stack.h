#pragma once

#include <tiffio.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "../input_file.h"

namespace quorbin::io {

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, CloseTiff>;

/// Opens a TIFF to be read, from the file itself where it is one.
Tiff openTiff(InputFile& file);

/// What the pages of a TIFF are: channels, layers and frames, as ImageJ and OME describe them; layers where
/// nothing is said.
struct TiffStack {
    std::size_t channels = 1, layers = 1, frames = 1;
    std::array<double, 3> spacing = {1, 1, 1};
    bool isField = false;
    std::vector<toff_t> pages;  ///< where they stand, by frame, layer and channel, which comes first

    toff_t page(std::size_t channel, std::size_t layer, std::size_t frame) const {
        return pages[channel + channels * (layer + layers * frame)];
    }
};

/// Looks at all pages, not at their samples. Pictures in a smaller size beside the full one are left out.
TiffStack readTiffStack(TIFF* tiff);

}  // namespace quorbin::io
