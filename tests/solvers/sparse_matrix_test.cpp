#include <brin/sparse_matrix.h>

#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace {

TEST(Matrix, IsSharedByItsCopies) {
    brin::Matrix a(2, 3);
    brin::Matrix b = a;
    b(1, 2) = 5.0;
    EXPECT_EQ(a.data()[5], 5.0);
    EXPECT_EQ(a.rows(), 2);
    EXPECT_EQ(a.cols(), 3);
    EXPECT_EQ(brin::Matrix(-1, 4).rows(), 0);
}

TEST(SparseMatrix, CreatesWhatIsAbsentAndOutgrowsItsReserve) {
    brin::SparseMatrix A(3, 10, 6);
    EXPECT_EQ(A.get(1, 4), 0.0);
    for (int j = 0; j < 10; ++j) A.get(1, j) += j;
    A.get(1, 9) *= 2;
    EXPECT_EQ(A.entryCount(), 10U);
    double sum = 0;
    A.forEachEntry(1, [&](int column, double value) { sum += column == 9 ? value / 2 : value; });
    EXPECT_EQ(sum, 45.0);
    EXPECT_EQ(A.get(0, 0), 0.0);
    EXPECT_EQ(A.entryCount(), 11U);
}

TEST(DirectSolver, SolvesRandomSystems) {
    std::mt19937 random(4);
    std::uniform_real_distribution<double> value(-1, 1);
    for (int n : {1, 2, 7, 60}) {
        brin::SparseMatrix A(n, n, 3 * n);
        brin::Matrix b(n, 1), expected(n, 1);
        for (int i = 0; i < n; ++i) expected(i, 0) = value(random);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
                if (i == j || j == (i + 1) % n || (7 * i + j) % 5 == 0) {
                    A.get(i, j) = value(random) + (i == j ? 8 : 0);
                    b(i, 0) += A.get(i, j) * expected(j, 0);
                }
        const brin::Matrix x = brin::SparseMatrix::umfsolve(A, b);
        ASSERT_EQ(x.rows(), n);
        for (int i = 0; i < n; ++i) EXPECT_NEAR(x(i, 0), expected(i, 0), 1e-12);
    }
}

TEST(DirectSolver, GivesNotANumberWhereThereIsNoSolution) {
    brin::SparseMatrix singular(2, 2, 4);
    for (int i : {0, 1})
        for (int j : {0, 1}) singular.get(i, j) = 1.0;
    brin::Matrix b(2, 1), tooLong(3, 1);
    b(0, 0) = 1.0;
    for (brin::Matrix* rightSide : {&b, &tooLong}) {
        const brin::Matrix x = brin::SparseMatrix::umfsolve(singular, *rightSide);
        ASSERT_EQ(x.rows(), 2);
        EXPECT_TRUE(std::isnan(x(0, 0)) && std::isnan(x(1, 0)));
    }
}

}  // namespace
