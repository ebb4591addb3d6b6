// SPDX-License-Identifier: MIT
#include "overlay/centroid.h"

#include <gtest/gtest.h>

namespace {

MPointF at(float x, float y) {
    return {kAnchorPoint, x, y, 0, 0, 0};
}

TEST(CentroidOfPoints, IsTheCentreOfTheBoundingBox) {
    Centroid centroid;
    const std::vector<MPointF> points = {at(0.2F, 0.4F), at(0.6F, 0.8F), at(0.25F, 0.45F)};
    EXPECT_EQ(calculateCentroid(&points, &centroid), S_OK);
    EXPECT_FLOAT_EQ(centroid.x, 0.4F);
    EXPECT_FLOAT_EQ(centroid.y, 0.6F);
}

TEST(CentroidOfPoints, OfASinglePointIsTheOrigin) {
    Centroid centroid = {7, 7};
    const std::vector<MPointF> points = {at(0.2F, 0.4F)};
    EXPECT_EQ(calculateCentroid(&points, &centroid), S_OK);
    EXPECT_EQ(centroid.x, 0.0F);
    EXPECT_EQ(centroid.y, 0.0F);
}

TEST(CentroidOfPoints, WithoutPointsOrOutputNothingIsStored) {
    Centroid centroid = {7, 7};
    const std::vector<MPointF> none;
    const std::vector<MPointF> points = {at(0.2F, 0.4F)};
    EXPECT_EQ(calculateCentroid(nullptr, &centroid), E_FAIL);
    EXPECT_EQ(calculateCentroid(&none, &centroid), E_FAIL);
    EXPECT_EQ(calculateCentroid(&points, nullptr), E_FAIL);
    EXPECT_EQ(centroid.x, 7.0F);
}

} // namespace
