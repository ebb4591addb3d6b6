// SPDX-License-Identifier: MIT
// Vectors and records that belong to another module: with another run time there, memory that is allocated here could
// not be freed. What is large enough is filled in place.

#include <gtest/gtest.h>

#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

constexpr std::size_t kRoom = 64;

TEST(CallersMemory, AVectorOfPointsIsFilledInPlace) {
    std::vector<MPointF> points;
    points.reserve(kRoom);
    const MPointF *const memory = points.data();
    const PyRef list = PyRef::adopt(
        Py_BuildValue("[(ffiii)(ffiii)(ffiii)]", 0.25, 0.5, 0, 0, 0, 0.5, 0.5, 1, 0, 0, 0.5, 0.75, 1, 0, 0));
    Orvanel::SetDevSettingPoints(list.get(), points);
    EXPECT_EQ(points.size(), 3U);
    EXPECT_EQ(points.data(), memory);
    const std::string records(kRoom * sizeof(MPointF), '\0');
    const PyRef bytes =
        PyRef::adopt(PyString_FromStringAndSize(records.data(), static_cast<Py_ssize_t>(records.size())));
    Orvanel::SetDevSettingPointsBuf(bytes.get(), points);
    EXPECT_EQ(points.size(), kRoom);
    EXPECT_EQ(points.data(), memory);
    EXPECT_EQ(points.capacity(), kRoom);
}

TEST(CallersMemory, ARecordIsFilledInPlace) {
    Orvanel object;
    object.SetVideoCoordinate(200, 100, 0, 0, 200, 100);
    for (int index = 0; index < 5; ++index)
        object.AddPoint(10 * index, 20);
    Quill::KeyFrameMaskInfo record;
    record.points.reserve(kRoom);
    record.pointsF.reserve(kRoom);
    const MPoint *const points = record.points.data();
    const MPointF *const pointsF = record.pointsF.data();
    Quill::KeyFrameMaskInfo *filled = &record;
    object.UpdateKeyFrameInCurrent(filled, 5);
    EXPECT_EQ(filled, &record);
    EXPECT_EQ(record.duration, 5);
    EXPECT_EQ(record.points.size(), 13U) << "anchors and the controls between them";
    object.SetVideoCoordinate(400, 300, 0, 0, 400, 300);
    object.UpdateKeyFrameInSize(&record);
    object.DrawExistKeyFrame(&record);
    EXPECT_EQ(record.points.size(), record.pointsF.size());
    EXPECT_EQ(record.points.data(), points);
    EXPECT_EQ(record.pointsF.data(), pointsF);
}

} // namespace
