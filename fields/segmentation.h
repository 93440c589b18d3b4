#pragma once

#include <vector>

#include <quorbin.h>

#include "../io/image.h"
#include "band.h"

namespace quorbin::fields {

/// Two regions of constant intensity (Chan and Vese 2001): the outline moves by weight · curvature + (I -
/// c_in)² - (I - c_out)², where c_in and c_out are the mean intensities on its two sides.
class Segmentation {
 public:
    /// Intensities are scaled to 0..1, from the darkest sample to the brightest.
    Segmentation(const io::Image& picture, double weight, bool implicit);

    /// Moves the outline by a number of steps and makes the field a signed distance. An explicit step takes
    /// the stable time, or less where the outline would move by more than half a sample; an implicit one the
    /// time in which the largest force moves it by one. False where nothing is left of the outline.
    bool move(FullLevelSet2D& field, int steps);

    /// Takes the means of the two sides, as every step does.
    void measureMeans(const FullLevelSet2D& field);

    /// The same on a band, explicit; the means are taken once.
    bool move(Band<2>& band, const FullLevelSet2D& field, int steps);

    double meanInside() const { return meanInside_; }
    double meanOutside() const { return meanOutside_; }

 private:
    double force(int x, int y) const;
    double forceOf(double intensity) const;
    double largestForce() const;

    int width_, height_;
    std::vector<double> intensity_;
    double weight_;
    bool implicit_;
    double meanInside_ = 0, meanOutside_ = 0;
};

/// The furthest that a point of either outline lies from the other, by two fields that are signed distances,
/// in samples.
double furthestApart(const FullLevelSet2D& one, const FullLevelSet2D& other);

}  // namespace quorbin::fields
