// SPDX-License-Identifier: MIT
#include "platform/environment.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/test_environment.h"

namespace platform {
namespace {

// A name with a blank, as the one that the product reads has.
constexpr char kName[] = "orvanel test number";

std::int32_t numberOf(const std::string &value) {
    const ScopedEnvironment variable(kName, value.c_str());
    return environmentNumber(kName);
}

TEST(EnvironmentTest, AbsentVariableIsZero) {
    const ScopedEnvironment variable(kName, nullptr);
    EXPECT_EQ(environmentText(kName), std::nullopt);
    EXPECT_EQ(environmentNumber(kName), 0);
}

TEST(EnvironmentTest, NonNumericVariableIsZero) {
    for (const char *value : {" ", "window", "x12", "--12", "+-1", "- 1", "."})
        EXPECT_EQ(numberOf(value), 0) << value;
}

TEST(EnvironmentTest, DecimalNumbersWithSignAndBlanks) {
    EXPECT_EQ(numberOf("0"), 0);
    EXPECT_EQ(numberOf("132456"), 132456);
    EXPECT_EQ(numberOf("-132456"), -132456);
    EXPECT_EQ(numberOf("+7"), 7);
    EXPECT_EQ(numberOf(" \t42"), 42);
    EXPECT_EQ(numberOf("0042"), 42);
    EXPECT_EQ(numberOf("12 34"), 12);
    EXPECT_EQ(numberOf("12.9"), 12);
    EXPECT_EQ(numberOf("0x10"), 0) << "decimal only";
}

TEST(EnvironmentTest, OverflowSaturates) {
    EXPECT_EQ(numberOf("2147483647"), INT32_MAX);
    EXPECT_EQ(numberOf("2147483648"), INT32_MAX);
    EXPECT_EQ(numberOf("-2147483648"), INT32_MIN);
    EXPECT_EQ(numberOf("-2147483649"), INT32_MIN);
    EXPECT_EQ(numberOf("99999999999999999999999999"), INT32_MAX);
    EXPECT_EQ(numberOf("-" + std::string(100, '9')), INT32_MIN);
}

TEST(EnvironmentTest, NoMoreThan128CharactersAreRead) {
    EXPECT_EQ(numberOf(std::string(126, '0') + "12"), 12);
    EXPECT_EQ(numberOf(std::string(126, '0') + "123"), 12);
    EXPECT_EQ(numberOf(std::string(128, ' ') + "5"), 0);
    EXPECT_EQ(numberOf(std::string(5000, '0') + "5"), 0);
}

} // namespace
} // namespace platform
