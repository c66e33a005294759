#include <gtest/gtest.h>

#include "caudalis/design/NozzleSize.hpp"

using caudalis::design::NozzleSize;

TEST(NozzleSize, NumberedSizesAreInch128ths) {
    // #24 = 24/128 in = 0.1875 in = 4.7625 mm
    const auto size = NozzleSize::fromDesignation("#24 (4.76 mm)");
    ASSERT_TRUE(size.has_value());
    EXPECT_DOUBLE_EQ(size->inch128ths, 24);
    EXPECT_DOUBLE_EQ(size->millimetres, 4.7625);
    EXPECT_DOUBLE_EQ(NozzleSize::fromDesignation("24/128")->millimetres, 4.7625);
    EXPECT_DOUBLE_EQ(NozzleSize::fromDesignation("# 6")->inch128ths, 6);
}

TEST(NozzleSize, MetricSizesAreConverted) {
    // 4.5 mm = 4.5 / 25.4 x 128 = 22.677 / 128 in
    const auto size = NozzleSize::fromDesignation("4.5 mm");
    ASSERT_TRUE(size.has_value());
    EXPECT_DOUBLE_EQ(size->millimetres, 4.5);
    EXPECT_NEAR(size->inch128ths, 22.677165, 1e-6);
    EXPECT_DOUBLE_EQ(NozzleSize::fromDesignation("12,5MM")->millimetres, 12.5);
}

TEST(NozzleSize, OtherDesignationsStateNoSize) {
    EXPECT_FALSE(NozzleSize::fromDesignation("z-1").has_value());
    EXPECT_FALSE(NozzleSize::fromDesignation("").has_value());
    EXPECT_FALSE(NozzleSize::fromDesignation("5 mmHg gauge").has_value());
}
