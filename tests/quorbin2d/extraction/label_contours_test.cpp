#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <quorbin.h>

namespace {

constexpr int kWidth = 40, kHeight = 30;
constexpr double kXSpace = 0.5, kYSpace = 2;

void makeField(const std::vector<double>& labels, double label, FullLevelSet2D& field) {
    field.init(kWidth, kHeight, kXSpace, kYSpace);
    std::transform(labels.begin(), labels.end(), field.data(),
                   [=](double v) { return v == label ? -0.5 : 0.5; });
}

std::vector<double> randomLabels(int count) {
    std::mt19937 random(static_cast<unsigned>(count));
    std::vector<double> labels(kWidth * kHeight);
    for (double& label : labels) label = static_cast<double>(random() % static_cast<unsigned>(count));
    return labels;
}

/// A directed edge, by the coordinates of its ends.
using Edge = std::array<double, 4>;

void addEdges(const quorbin::Ring& ring, std::multiset<Edge>& edges, std::multiset<Edge>& opposite) {
    const auto isOnBorder = [](double a, double b, double end) { return a == b && (a == 0 || a == end); };
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const auto &p = ring[i], &q = ring[(i + 1) % ring.size()];
        if (isOnBorder(p.x, q.x, (kWidth - 1) * kXSpace) || isOnBorder(p.y, q.y, (kHeight - 1) * kYSpace))
            continue;
        edges.insert({p.x, p.y, q.x, q.y});
        opposite.insert({q.x, q.y, p.x, p.y});
    }
}

TEST(LabelContours, FillThePictureExactlyOnceTogetherAndShareAllEdges) {
    for (int count = 1; count <= 7; ++count) {
        const std::vector<double> labels = randomLabels(count);
        double together = 0;
        std::multiset<Edge> edges, opposite;
        for (int label = 0; label < count; ++label) {
            FullLevelSet2D field;
            makeField(labels, label, field);
            for (const quorbin::Polygon& region : quorbin::contours(field, labels)) {
                EXPECT_GT(quorbin::area(region), 0);
                together += quorbin::area(region);
                addEdges(region.outline, edges, opposite);
                for (const quorbin::Ring& hole : region.holes) addEdges(hole, edges, opposite);
            }
        }
        EXPECT_NEAR(together, (kWidth - 1) * kXSpace * (kHeight - 1) * kYSpace, 1e-9) << count;
        EXPECT_TRUE(edges == opposite) << count;
        EXPECT_EQ(edges.empty(), count == 1);
    }
}

TEST(LabelContours, OfRowsAreThoseOfTheField) {
    const std::vector<double> labels = randomLabels(4);
    FullLevelSet2D field;
    makeField(labels, 2, field);
    const auto rowsIn = [](const double* values) {
        return
            [values](int y, double* row) { std::copy_n(values + std::ptrdiff_t{y} * kWidth, kWidth, row); };
    };
    const quorbin::FieldRows rows{
        kWidth, kHeight, kXSpace, kYSpace, rowsIn(field.data()), rowsIn(labels.data())};
    const auto isSame = [](const quorbin::Polygon& a, const quorbin::Polygon& b) {
        return a.outline == b.outline && a.holes == b.holes;
    };
    std::vector<quorbin::Polygon> regions, cut;
    std::vector<quorbin::Ring> lines;
    EXPECT_TRUE(
        quorbin::contours(rows, [&](quorbin::Polygon&& region) { regions.push_back(std::move(region)); }));
    EXPECT_TRUE(quorbin::openContours(
        rows, [&](quorbin::Polygon&& region) { cut.push_back(std::move(region)); },
        [&](quorbin::Ring&& line) { lines.push_back(std::move(line)); }));
    const auto whole = quorbin::contours(field, labels);
    const auto open = quorbin::openContours(field, labels);
    EXPECT_TRUE(std::equal(whole.begin(), whole.end(), regions.begin(), regions.end(), isSame));
    EXPECT_TRUE(std::equal(open.regions.begin(), open.regions.end(), cut.begin(), cut.end(), isSame));
    EXPECT_EQ(lines, open.lines);
}

TEST(LabelContours, OfTwoLabelsAreThoseOfTheirFields) {
    const std::vector<double> labels = randomLabels(2);
    FullLevelSet2D field;
    for (const double label : {0, 1}) {
        makeField(labels, label, field);
        const auto ours = quorbin::openContours(field, labels), known = quorbin::openContours(field);
        ASSERT_EQ(ours.regions.size(), known.regions.size());
        ASSERT_EQ(ours.lines.size(), known.lines.size());
        for (std::size_t i = 0; i < known.regions.size(); ++i)
            EXPECT_EQ(quorbin::area(ours.regions[i]), quorbin::area(known.regions[i]));
    }
    EXPECT_THROW(quorbin::contours(field, {0, 1}), std::invalid_argument);
}

}  // namespace
