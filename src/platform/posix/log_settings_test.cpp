// SPDX-License-Identifier: MIT
#include "platform/posix/log_settings.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/test_environment.h"

namespace platform {
namespace {

using Found = std::optional<LogSwitches>;

Found parse(std::string_view text, const wchar_t *key = kDefaultLogKey, const wchar_t *dump = kDumpSwitch) {
    return parseLogSettings(text, key, dump);
}

TEST(LogSettingsTest, TheDefaultKeyExistsInEveryFile) {
    EXPECT_EQ(parse(""), Found({false, false}));
    EXPECT_EQ(parse("[SoftWare\\Other]\nDumpMsg = 1\n"), Found({false, false}));
}

TEST(LogSettingsTest, LinesBeforeTheFirstSectionBelongToTheDefaultKey) {
    EXPECT_EQ(parse("DumpMsg = 1"), Found({true, false}));
    EXPECT_EQ(parse("DumpInETW=1\nDumpMsg=1\n"), Found({true, true}));
    EXPECT_EQ(parse("DumpInETW = 1\n[Other]\nDumpMsg = 1\n"), Found({false, true}));
}

TEST(LogSettingsTest, ASectionIsAKey) {
    const std::string text = "DumpMsg = 1\n"
                             "[SoftWare\\Other]\nDumpMsg = 0\nDumpInETW = 1\n"
                             "[SoftWare\\Brannock\\Tintmoor\\Preview]\nDumpMsg = 1\nDumpInETW = 1\n"
                             "[SoftWare\\Brannock\\Tintmoor]\nDumpInETW = 1\n";
    EXPECT_EQ(parse(text), Found({true, true}));
    EXPECT_EQ(parse(text, L"SoftWare\\Other"), Found({false, true}));
    EXPECT_EQ(parse(text, L"SoftWare\\Brannock\\Tintmoor\\Preview"), Found({true, true}));
}

TEST(LogSettingsTest, AMissingSectionDoesNotOpen) {
    EXPECT_EQ(parse("DumpMsg = 1\n[SoftWare\\Other]\n", L"SoftWare\\Another"), std::nullopt);
    EXPECT_EQ(parse("DumpMsg = 1\n[SoftWare\\Other]\n", L"SoftWare"), std::nullopt);
    EXPECT_EQ(parse("[SoftWare\\Other\n", L"SoftWare\\Other"), std::nullopt) << "no closing bracket";
}

TEST(LogSettingsTest, NamesAndKeysAreComparedWithoutCase) {
    EXPECT_EQ(parse("dumpmsg = 1\nDUMPINETW = 1"), Found({true, true}));
    EXPECT_EQ(parse("[software\\OTHER]\nDumpMsg = 1", L"SoftWare\\Other"), Found({true, false}));
}

TEST(LogSettingsTest, TheDumpSwitchMayHaveAnotherName) {
    EXPECT_EQ(parse("DumpMsg = 1\nDumpPreview = 0", kDefaultLogKey, L"DumpPreview"), Found({false, false}));
    EXPECT_EQ(parse("DumpPreview = 1", kDefaultLogKey, L"DumpPreview"), Found({true, false}));
    EXPECT_EQ(parse("DumpInETW = 1", kDefaultLogKey, L"DumpInETW"), Found({true, true})) << "one value, both switches";
}

TEST(LogSettingsTest, AnyNumberButZeroIsOn) {
    for (const char *on : {"1", "2", "0x1", "0XfF", "4294967295", "007"})
        EXPECT_EQ(parse(std::string("DumpMsg = ") + on), Found({true, false})) << on;
    for (const char *off : {"0", "0x0", "00", "", "yes", "1 2", "1x", "-1", "+1", "0x", "4294967296", "\"1\""})
        EXPECT_EQ(parse(std::string("DumpMsg = ") + off), Found({false, false})) << off;
}

TEST(LogSettingsTest, CommentsBlanksAndForeignLinesDoNoHarm) {
    EXPECT_EQ(parse("# DumpMsg = 1\n; DumpMsg = 1\n\n  \t\nnonsense\n= 1\nOther = 5\n"), Found({false, false}));
    EXPECT_EQ(parse("\t DumpMsg\t=  1 \r\n  [ SoftWare\\Other ] \r\n"), Found({true, false}));
    EXPECT_EQ(parse("  [ SoftWare\\Other ] \r\nDumpInETW = 1\r\n", L"SoftWare\\Other"), Found({false, true}));
}

TEST(LogSettingsTest, OfANameGivenTwiceTheLastCounts) {
    EXPECT_EQ(parse("DumpMsg = 1\nDumpMsg = 0\n"), Found({false, false}));
}

TEST(LogSettingsTest, ThePathIsTheMachinesUnlessTheEnvironmentNamesAnother) {
    {
        const ScopedEnvironment variable(kLogSettingsVariable, nullptr);
        EXPECT_EQ(logSettingsPath(), "/etc/orvanel/log.conf");
    }
    {
        const ScopedEnvironment variable(kLogSettingsVariable, "");
        EXPECT_EQ(logSettingsPath(), "/etc/orvanel/log.conf");
    }
    const ScopedEnvironment variable(kLogSettingsVariable, "/nowhere/log.conf");
    EXPECT_EQ(logSettingsPath(), "/nowhere/log.conf");
}

} // namespace
} // namespace platform
