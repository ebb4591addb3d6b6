// SPDX-License-Identifier: MIT
#include "support/printf_format.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace diaglog {
namespace {

using enum FormatFault;
enum class Code { Value };
enum class LongCode : std::int64_t { Value };

// The checks below are what the compiler does to every log call; a format that fails one does not compile there.

TEST(PrintfFormatTest, FormatsThatFitAreAccepted) {
    static_assert(formatFault("") == None);
    static_assert(formatFault("Orvanel::ReDraw() enter\n") == None);
    static_assert(formatFault("100%%") == None);
    static_assert(formatFault<int, int>("[Orvanel::Create] New PyMap, size=(%d,%d)") == None);
    static_assert(formatFault<std::int64_t, int>("duration=%lld count=%d") == None);
    static_assert(formatFault<std::uint32_t>("error code = 0x%x\n") == None);
    static_assert(formatFault<double, float>("%f %+08.3g") == None);
    static_assert(formatFault<int, int, double>("%*.*f") == None);
    static_assert(formatFault<const char *, char *, wchar_t *>("%s %-10.3s %S") == None);
    static_assert(formatFault<wchar_t *, char *>("%ls %hs") == None);
    static_assert(formatFault<void *, int *>("%p %p") == None);
    static_assert(formatFault<char, char, bool, short, std::uint16_t, std::uint8_t>("%c %d %d %hd %hu %hhu") == None);
    static_assert(formatFault<Code, LongCode>("%d %lld") == None);
    static_assert(formatFault<std::nullptr_t>("%s") == None);
}

TEST(PrintfFormatTest, WideFormatsFollowMicrosoftsRule) {
    static_assert(formatFault<wchar_t *, char *>(L"%s %S") == None);
    static_assert(formatFault<wchar_t *, char *>(L"%ls %hs") == None);
    static_assert(formatFault<int, int, int>(L"(%d, %d) %c") == None);
    static_assert(formatFault<char *>(L"%s") == WrongArgument);
    static_assert(formatFault<wchar_t *>(L"%S") == WrongArgument);
}

TEST(PrintfFormatTest, TheNumberOfArgumentsMustFit) {
    static_assert(formatFault<int>("%d %d") == TooFewArguments);
    static_assert(formatFault("%s") == TooFewArguments);
    static_assert(formatFault<double>("%*f") == WrongArgument);
    static_assert(formatFault<int>("%*d") == TooFewArguments);
    static_assert(formatFault<int>("none") == TooManyArguments);
    static_assert(formatFault<int, int>("%d %%") == TooManyArguments);
}

TEST(PrintfFormatTest, TheTypesOfArgumentsMustFit) {
    static_assert(formatFault<std::int64_t>("%d") == WrongArgument);
    static_assert(formatFault<std::size_t>("%d") == WrongArgument);
    static_assert(formatFault<int>("%lld") == WrongArgument);
    static_assert(formatFault<LongCode>("%d") == WrongArgument);
    static_assert(formatFault<double>("%d") == WrongArgument);
    static_assert(formatFault<int>("%f") == WrongArgument);
    static_assert(formatFault<int>("%s") == WrongArgument);
    static_assert(formatFault<const char *>("%d") == WrongArgument);
    static_assert(formatFault<const wchar_t *>("%s") == WrongArgument);
    static_assert(formatFault<const char *>("%S") == WrongArgument);
    static_assert(formatFault<const unsigned char *>("%s") == WrongArgument);
    static_assert(formatFault<int>("%p") == WrongArgument);
    static_assert(formatFault<std::string>("%s") == WrongArgument);
}

TEST(PrintfFormatTest, WhatMeansSomethingElseElsewhereIsRefused) {
    static_assert(formatFault<long>("%ld") == UnportableLength);
    static_assert(formatFault<double>("%lf") == UnportableLength);
    static_assert(formatFault<int>("%lc") == UnportableLength);
    static_assert(formatFault<const char *>("%lls") == UnportableLength);
    static_assert(formatFault<std::size_t>("%zu") == UnknownConversion);
    static_assert(formatFault<std::int64_t>("%I64d") == UnknownConversion);
    static_assert(formatFault<int *>("%n") == UnknownConversion);
    static_assert(formatFault<int>("%y") == UnknownConversion);
    static_assert(formatFault("50%") == UnknownConversion);
    static_assert(formatFault("%5") == UnknownConversion);
    static_assert(formatFault("%ll") == UnknownConversion);
}

TEST(PrintfFormatTest, ArgumentsTravelInTheWidthOfTheirConversion) {
    static_assert(std::is_same_v<decltype(passed(std::uint8_t{1})), int>);
    static_assert(std::is_same_v<decltype(passed(0xFFFFFFFFU)), int>);
    static_assert(std::is_same_v<decltype(passed(std::int64_t{1})), long long>);
    static_assert(std::is_same_v<decltype(passed(std::size_t{1})), long long>);
    static_assert(std::is_same_v<decltype(passed(1.0F)), double>);
    static_assert(std::is_same_v<decltype(passed(LongCode::Value)), long long>);
    static_assert(std::is_same_v<decltype(passed(nullptr)), const char *>);
}

} // namespace
} // namespace diaglog
