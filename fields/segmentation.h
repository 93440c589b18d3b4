#pragma once

#include <functional>
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

    /// Called now and then within a step, and may throw to end it; the field is then of no use.
    void whileMoving(std::function<void()> look) { look_ = std::move(look); }

    double meanInside() const { return meanInside_; }
    double meanOutside() const { return meanOutside_; }

 private:
    double force(int x, int y) const;
    double forceOf(double intensity) const;
    double largestForce() const;
    void look() const {
        if (look_) look_();
    }

    int width_, height_;
    std::vector<double> intensity_;
    double weight_;
    bool implicit_;
    double meanInside_ = 0, meanOutside_ = 0;
    std::function<void()> look_;
};

/// The furthest that a point of either outline lies from the other, by two fields that are signed distances,
/// in samples. look, if there is one, is called for each row, and may throw.
double furthestApart(const FullLevelSet2D& one, const FullLevelSet2D& other,
                     const std::function<void()>& look = {});

struct SegmentOptions {
    double weight = 0.2;  ///< of the curvature
    int maxSteps = 5000;
    bool implicit = false;
    bool onBand = false;  ///< explicit, around the outline alone
    /// Told of the start and of the field after every ten steps.
    std::function<void(int step, const FullLevelSet2D& field)> follow = {};
    Progress progress = {};
};

struct SegmentResult {
    bool isEnded = false;  ///< by progress; the field is then of no use
    int steps = 0;
    double moved = 0;      ///< by how many samples the outline moved in the last ten steps
    bool isStill = false;  ///< which is less than a tenth of one
    double meanInside = 0, meanOutside = 0;
};

/// Moves the outline of a field, which is a signed distance, until it is still, or for as many steps as there
/// may be. Throws Failure where nothing is left of it, or where a band does not suit the spacings.
SegmentResult segment(const io::Image& picture, FullLevelSet2D& field, const SegmentOptions& options);

}  // namespace quorbin::fields
