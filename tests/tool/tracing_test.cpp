#include "io/formats/outline.h"

#include <cmath>

#include <gtest/gtest.h>

#include "quorbin2d/dense_support.h"

using namespace quorbin::io;

namespace {

struct Total {
    double area = 0;
    std::size_t polygonPoints = 0;
};

Total totalOf(const Contour& contour) {
    Total total;
    for (const auto& polygon : contour.polygons) {
        total.area += quorbin::area(contour.points, polygon);
        total.polygonPoints += polygon.size();
    }
    return total;
}

// Exact zeros, equal greys, crossings within rounding of the border: whatever the field, every point of the
// contour is on a closed loop, and what is inside and what is outside make up the whole picture.
TEST(ClosedTracing, ClosesEveryLoopAndTheAreasAddUp) {
    std::mt19937 random(17);
    std::uniform_int_distribution<int> size(1, 12), grey(-2, 1), small(-1, 1), kind(0, 3);
    std::uniform_real_distribution<double> real(-1, 1);
    for (int round = 0; round < 20000; ++round) {
        FullLevelSet2D field, complement;
        const int width = size(random), height = size(random), chosen = kind(random);
        fill(field, width, height, [&](int, int) {
            if (chosen == 0) return real(random);
            if (chosen == 1) return double(grey(random));
            if (chosen == 2) return small(random) * std::pow(10.0, 10 * real(random));
            return double(small(random));
        });
        // An exact zero is inside the field, so it is just outside the complement.
        fill(complement, width, height,
             [&](int x, int y) { return field.get(x, y) == 0 ? 1e-30 : -field.get(x, y); });
        double sum = 0;
        for (const FullLevelSet2D* f : {&field, &complement}) {
            const Contour contour = traceClosed(*f);
            const Total total = totalOf(contour);
            ASSERT_EQ(total.polygonPoints, contour.points.size()) << "round " << round;
            sum += total.area;
            for (const auto& p : contour.points)
                ASSERT_TRUE(p.x >= 0 && p.x <= width - 1 && p.y >= 0 && p.y <= height - 1);
        }
        ASSERT_NEAR(sum, (width - 1.0) * (height - 1.0), 1e-9) << "round " << round;
    }
}

TEST(OpenTracing, EndsLinesAtTheBorder) {
    FullLevelSet2D field;
    fill(field, 5, 5, [](int x, int y) { return x == 3 && y == 2 ? -1.0 : x - 1.5; });
    const Contour contour = traceOpen(field);
    ASSERT_EQ(contour.polygons.size(), 1U);
    ASSERT_EQ(contour.openLines.size(), 1U);
    EXPECT_EQ(contour.openLines[0].size(), 5U);
    EXPECT_EQ(totalOf(contour).polygonPoints + 5, contour.points.size());
}

}  // namespace
