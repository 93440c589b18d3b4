#pragma once

#include <quorbin2d.h>

/// A picture's field on a narrow band. A band has no border where an outline could end, so a few points beyond it are
/// stored too, mirrored as the dense grid mirrors.
class Band {
 public:
    explicit Band(FullLevelSet2D& field);

    /// Makes the band a signed distance again. False where nothing is left of the outline.
    bool reinitialise();

    /// Writes the values back; beyond the band they keep its reach and the side they are on.
    void copyTo(FullLevelSet2D& field) const;

    FastLevelSet2D& points() { return band_; }

 private:
    void mirror();

    FastLevelSet2D band_;
    int width_, height_;
};

/// The same without the line that the library prints.
void initQuietly(FastLevelSet2D& band, FullLevelSet2D& grid, bool reinit);
