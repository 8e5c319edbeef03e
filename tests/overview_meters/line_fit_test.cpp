#include "mpeg_ts_overview/meters/line_fit.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

double greatest_residual(const line_fit &line)
{
    double greatest = 0;
    for (const double rest : line.residuals()) greatest = std::max(greatest, std::abs(rest));
    return greatest;
}

} // namespace

TEST(line_fit, three_points_leave_what_is_computed_by_hand)
{
    line_fit line;
    ASSERT_TRUE(line.fit({
        {0, 0},
        {1, 1},
        {2, 0}
    }));
    ASSERT_EQ(line.residuals().size(), 3u);
    EXPECT_NEAR(line.residuals()[0], -1.0 / 3, 1e-15);
    EXPECT_NEAR(line.residuals()[1], 2.0 / 3, 1e-15);
    EXPECT_NEAR(line.residuals()[2], -1.0 / 3, 1e-15);
    EXPECT_NEAR(line.slope_minus_one(), -1, 1e-15);
}

TEST(line_fit, the_slope_is_that_of_least_squares_not_of_the_ends)
{
    line_fit line;
    ASSERT_TRUE(line.fit({
        {0, 0},
        {1, 3},
        {2, 2},
        {3, 3}
    })); // slope 0.8
    EXPECT_NEAR(line.slope_minus_one(), -0.2, 1e-15);
    EXPECT_NEAR(line.residuals()[1], 1.4, 1e-15);
}

TEST(line_fit, nothing_is_left_of_an_exact_line)
{
    std::vector<line_point> points;
    for (int64_t i = 0; i < 4096; ++i) points.push_back({7 * i, 65731 * i});
    line_fit line;
    ASSERT_TRUE(line.fit(points));
    EXPECT_EQ(greatest_residual(line), 0);
}

TEST(line_fit, nothing_is_left_of_a_line_whose_products_do_not_fit_into_64_bits)
{
    std::vector<line_point> points;
    for (int64_t i = 0; i < 1000; ++i) points.push_back({i << 44, 270000 * i});
    line_fit line;
    ASSERT_TRUE(line.fit(points));
    EXPECT_LT(greatest_residual(line), 1e-6);
}

TEST(line_fit, one_point_that_is_off_is_found_to_a_millionth)
{
    std::vector<line_point> points;
    for (int64_t i = 0; i < 1001; ++i) points.push_back({100 * i, 270000 * i});
    points[500].y += 16;
    line_fit line;
    ASSERT_TRUE(line.fit(points));
    EXPECT_NEAR(line.residuals()[500], 16.0 * 1000 / 1001, 1e-9); // the middle pulls up the mean alone
    EXPECT_NEAR(line.residuals()[0], -16.0 / 1001, 1e-9);
}

TEST(line_fit, points_at_one_place_have_no_line)
{
    line_fit line;
    EXPECT_FALSE(line.fit({
        {0, 0},
        {0, 5}
    }));
    EXPECT_FALSE(line.fit({}));
}
