#include <heap.h>

#include <cmath>
#include <limits>
#include <map>

#include "quorbin3d/band_support.h"

namespace {

using Point = std::array<int, 3>;

std::array<Point, 6> neighboursOf(const Point& p) {
    const auto [x, y, z] = p;
    return {{{x + 1, y, z}, {x - 1, y, z}, {x, y + 1, z}, {x, y - 1, z}, {x, y, z + 1}, {x, y, z - 1}}};
}

/// The march of a band with nothing but hashes and the indexed heap.
class TextbookMarch {
 public:
    TextbookMarch(FastLevelSet3D& band, int bucketCount)
        : band_(band), states_(bucketCount), distances_(bucketCount) {}

    void run(Point3Hash<double>& values) {
        for (const auto& bucket : values.buckets)
            for (const auto& entry : bucket) look({entry.x, entry.y, entry.z}, entry.value);
        for (const int sign : {1, -1}) spread(sign);
        values.clear();
        for (const auto& bucket : distances_.buckets)
            for (const auto& e : bucket)
                values(e.x, e.y, e.z) = static_cast<signed char>(states_(e.x, e.y, e.z)) * e.value;
    }

    std::size_t entered() const { return ids_.size(); }

 private:
    bool hasState(const Point& p) { return states_.find(p[0], p[1], p[2]) != nullptr; }

    void look(const Point& p, double value) {
        const bool inside = value <= 0;
        const Point next[3] = {{p[0] + 1, p[1], p[2]}, {p[0], p[1] + 1, p[2]}, {p[0], p[1], p[2] + 1}};
        for (const Point& q : next) {
            const bool has = band_.have(q[0], q[1], q[2]);
            const bool nextInside = (has ? band_.get(q[0], q[1], q[2]) : value) <= 0;
            if (nextInside == inside) continue;
            makeFront(p, inside);
            makeFront(q, nextInside);
        }
    }

    void makeFront(const Point& p, bool inside) {
        if (hasState(p)) return;
        const auto [x, y, z] = p;
        states_(x, y, z) = inside ? -1 : 1;
        distances_(x, y, z) = band_.estimateDistanceInit(x, y, z);
        front_.push_back(p);
    }

    double estimate(const Point& p, int sign) {
        return band_.estimateDistance(distances_, states_, sign, p[0], p[1], p[2]);
    }

    void enter(const Point& p, int sign) {
        const int id = static_cast<int>(ids_.size());
        heap_.insert(id, estimate(p, sign));
        idOf_[p] = id;
        ids_.push_back(p);
        states_(p[0], p[1], p[2]) = 2;
    }

    void spread(int sign) {
        const double limit = 2.1 * std::max({band_.getXSpace(), band_.getYSpace(), band_.getZSpace()});
        for (const Point& p : front_)
            if (static_cast<signed char>(states_(p[0], p[1], p[2])) == sign)
                for (const Point& q : neighboursOf(p))
                    if (!hasState(q)) enter(q, sign);
        while (heap_.peek() >= 0) {
            double distance = 0;
            const int id = heap_.remove(&distance);
            const Point p = ids_[static_cast<std::size_t>(id)];
            states_(p[0], p[1], p[2]) = static_cast<char>(sign);
            distances_(p[0], p[1], p[2]) = distance;
            if (distance > limit) continue;
            for (const Point& q : neighboursOf(p)) {
                if (!hasState(q))
                    enter(q, sign);
                else if (states_(q[0], q[1], q[2]) == 2)
                    heap_.update(idOf_[q], estimate(q, sign), 0);
            }
        }
    }

    FastLevelSet3D& band_;
    Point3Hash<char> states_;
    Point3Hash<double> distances_;
    std::vector<Point> front_, ids_;
    std::map<Point, int> idOf_;
    lset::Heap heap_{1 << 18};
};

TEST(VolumeBandMarch, IsTheTextbooksBitForBitAndInItsOrderOnBothPaths) {
    onVolumeBandPairs([](FastLevelSet3D& band, SlowBand3D& slow) {
        for (int again = 0; again < 2; ++again) {
            Point3Hash<double> expected = band.points();
            TextbookMarch(band, expected.bucketCount).run(expected);
            band.ensureSignedDistanceFMM();
            slow.ensureSignedDistanceFMM();
            ASSERT_TRUE(contentOf(band.points()) == contentOf(expected));
            ASSERT_TRUE(contentOf(slow.points()) == contentOf(expected));
            band.moveAlongCurvature();
            slow.moveAlongCurvature();
        }
    });
}

TEST(VolumeBandMarch, OfAPlaneKeepsSixLayersAndPassesTheFacesOfTheGrid) {
    FullLevelSet3D grid;
    fill(grid, {7, 7, 7}, [](int, int, int z) { return z - 3.5; });
    FastLevelSet3D band;
    assignBandOf(band, grid, true);
    for (int z = -1; z <= 8; ++z) {
        EXPECT_EQ(band.have(3, 3, z), z >= 1 && z <= 6) << z;
        if (band.have(3, 3, z)) {
            EXPECT_EQ(band.get(3, 3, z), z - 3.5);
        }
    }
    EXPECT_TRUE(band.have(-1, 3, 3));
    band(60, 60, 60) = 1.0;
    band.ensureSignedDistanceFMM();
    EXPECT_FALSE(band.have(60, 60, 60));
}

TEST(VolumeBandMarch, TakesAnyBand) {
    FastLevelSet3D band;
    band.ensureSignedDistanceFMM();
    band.moveAlongCurvature();
    EXPECT_EQ(band.size(), 0);
    EXPECT_TRUE(std::isnan(band.averageNormalLength()));
    band(1, 1, 1) = band(2, 1, 1) = 3.0;  // no front
    band.ensureSignedDistanceFMM();
    EXPECT_EQ(band.size(), 0);

    // Single inside points bring more points than three for each stored one.
    FullLevelSet3D grid;
    fill(grid, {26, 26, 18},
         [](int x, int y, int z) { return x % 8 == 4 && y % 8 == 4 && z % 8 == 4 ? -1 : 1; });
    assignBandOf(band, grid, false);
    const int stored = band.size();
    Point3Hash<double> expected = band.points();
    TextbookMarch textbook(band, expected.bucketCount);
    textbook.run(expected);
    EXPECT_GT(textbook.entered(), 3U * static_cast<unsigned>(stored));
    band.ensureSignedDistanceFMM();
    EXPECT_TRUE(contentOf(band.points()) == contentOf(expected));

    // Where no distance could be told from none, and where a march would not end.
    for (const double h : {1e11, 0.0, -1.0, std::numeric_limits<double>::infinity()}) {
        FullLevelSet3D ball;
        fill(
            ball, {9, 9, 9}, [](int x, int y, int z) { return std::hypot(x - 4, y - 4, z - 4) - 2.5; }, h,
            std::max(h, 1.0), std::max(h, 1.0));
        assignBandOf(band, ball, true);
        EXPECT_LT(band.size(), 2000) << h;
        EXPECT_GT(band.size(), 0) << h;
    }

    const int end = std::numeric_limits<int>::max();  // coordinates wrap around
    FastLevelSet3D far;
    for (const int x : {end - 2, end - 1})
        for (const int y : {-1, 0, 1})
            for (const int z : {-1, 0, 1}) far(x, y, z) = x == end - 2 ? -0.5 : 0.5;
    far.ensureSignedDistanceFMM();
    EXPECT_EQ(far.get(end, 0, 0), 1.5);
    EXPECT_TRUE(far.have(std::numeric_limits<int>::min(), 0, 0));
}

TEST(VolumeBandMarch, AtUnequalSpacingsIsTheDistanceOfTheDenseGrid) {
    for (const double hz : {1.0, 2.5, 10.0}) {
        FullLevelSet3D grid;
        fill(
            grid, {44, 44, hz == 10.0 ? 14 : 30},
            [=](int x, int y, int z) {
                return std::hypot(x - 21.3, y - 20.8, hz * (z - (hz == 10 ? 6.4 : 14.2))) - 11;
            },
            1, 1, hz);
        FastLevelSet3D band;
        assignBandOf(band, grid, true);
        grid.ensureSignedDistanceFMM();
        int compared = 0;
        for (const auto& bucket : band.points().buckets)
            for (const auto& p : bucket) {
                if (std::abs(p.value) > 2.1 * hz || p.x < 0 || p.y < 0 || p.z < 0 || p.x > 43 || p.y > 43 ||
                    p.z >= grid.getDepth())
                    continue;
                ASSERT_EQ(p.value, grid.get(p.x, p.y, p.z)) << p.x << " " << p.y << " " << p.z << " " << hz;
                ++compared;
            }
        EXPECT_GT(compared, 3000);
    }
}

}  // namespace
