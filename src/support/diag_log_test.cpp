// SPDX-License-Identifier: MIT
#include "support/diag_log.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/log_recorder.h"

namespace {

using Lines = std::vector<std::string>;
using WideLines = std::vector<std::wstring>;

TEST(DiagLogTest, NoKeyWritesNothing) {
    LogRecorder log;
    diaglog::exchangeBackend(&log); // a fresh process
    log.switches = std::nullopt;
    DiagLogOpen("Orvanel");
    DiagLogPrint("Orvanel::ReDraw() enter\n");
    DiagLogPrintW(L"Orvanel::ReDraw() enter\n");
    EXPECT_EQ(log.lines(), Lines{});
    EXPECT_EQ(log.wideLines(), WideLines{});
    EXPECT_EQ(log.eventTraceLines(), WideLines{});
}

TEST(DiagLogTest, NothingIsWrittenBeforeTheLogIsOpened) {
    LogRecorder log;
    diaglog::exchangeBackend(&log);
    DiagLogPrint("line");
    DiagLogPrintW(L"line");
    EXPECT_EQ(log.lines(), Lines{});
    EXPECT_EQ(log.wideLines(), WideLines{});
}

TEST(DiagLogTest, DumpMsgOffWritesNothingWhateverDumpInEtwSays) {
    LogRecorder log;
    for (const bool eventTrace : {false, true}) {
        log.switches = platform::LogSwitches{false, eventTrace};
        DiagLogOpen("Orvanel");
        DiagLogPrint("Orvanel::ReDraw() enter\n");
        DiagLogPrintW(L"Orvanel::ReDraw() enter\n");
        EXPECT_EQ(log.lines(), Lines{});
        EXPECT_EQ(log.wideLines(), WideLines{});
        EXPECT_EQ(log.eventTraceLines(), WideLines{});
    }
}

TEST(DiagLogTest, DumpMsgOnReachesTheDebuggerWithPrefixAndTwoLineBreaks) {
    LogRecorder log;
    log.switches = platform::LogSwitches{true, false};
    DiagLogOpen("Orvanel");
    DiagLogPrint("Orvanel::ReDraw() enter\n");
    DiagLogPrintW(L"Orvanel::FindTargetPointsFromMask (%d, %d)", 1, -2);
    EXPECT_EQ(log.lines(), Lines{"[Orvanel] Orvanel::ReDraw() enter\n\n"});
    EXPECT_EQ(log.wideLines(), WideLines{L"[Orvanel] Orvanel::FindTargetPointsFromMask (1, -2)\n"});
    EXPECT_EQ(log.eventTraceLines(), WideLines{});
}

TEST(DiagLogTest, BothSwitchesOnReachTheEventLogAndNotTheDebugger) {
    LogRecorder log;
    log.switches = platform::LogSwitches{true, true};
    DiagLogOpen("Orvanel");
    DiagLogPrint("Orvanel::ReDraw() enter\n");
    DiagLogPrintW(L"wide");
    EXPECT_EQ(log.eventTraceLines(), (WideLines{L"[Orvanel] Orvanel::ReDraw() enter\n\n", L"[Orvanel] wide\n"}));
    EXPECT_EQ(log.lines(), Lines{});
    EXPECT_EQ(log.wideLines(), WideLines{});
}

TEST(DiagLogTest, WithoutAnEventLogTheLinesGoToTheDebugger) {
    LogRecorder log;
    log.switches = platform::LogSwitches{true, true};
    log.hasEventTrace = false;
    DiagLogOpen("Orvanel");
    DiagLogPrint("line");
    EXPECT_EQ(log.lines(), Lines{"[Orvanel] line\n"});
    EXPECT_EQ(log.eventTraceLines(), WideLines{});
}

TEST(DiagLogTest, AMessageIsCutAt1023Characters) {
    LogRecorder log;
    const std::string fits(1023, 'x');
    const std::wstring wideFits(1023, L'x');
    DiagLogPrint("%s", fits.c_str());
    DiagLogPrint("%s", (fits + "y").c_str());
    DiagLogPrint("%s", std::string(100000, 'x').c_str());
    DiagLogPrintW(L"%s", wideFits.c_str());
    DiagLogPrintW(L"%s", (wideFits + L"y").c_str());
    DiagLogPrintW(L"%s", std::wstring(100000, L'x').c_str());
    EXPECT_EQ(log.lines(), Lines(3, "[Orvanel] " + fits + "\n"));
    EXPECT_EQ(log.wideLines(), WideLines(3, L"[Orvanel] " + wideFits + L"\n"));
}

TEST(DiagLogTest, ANarrowLineReachesTheEventLogCutAt1024Characters) {
    LogRecorder log;
    log.switches = platform::LogSwitches{true, true};
    DiagLogOpen("Orvanel");
    DiagLogPrint("%s", std::string(1013, 'x').c_str());
    DiagLogPrint("%s", std::string(1014, 'x').c_str());
    DiagLogPrintW(L"%s", std::wstring(1023, L'x').c_str());
    const std::wstring text = L"[Orvanel] ";
    EXPECT_EQ(log.eventTraceLines(), (WideLines{
                                         text + std::wstring(1013, L'x') + L"\n",
                                         text + std::wstring(1014, L'x'), // its line end is the 1025th
                                         text + std::wstring(1023, L'x') + L"\n",
                                     }));
}

TEST(DiagLogTest, ANameOf64OrMoreCharactersLeavesThePrefixEmpty) {
    LogRecorder log;
    for (const std::size_t length : {64U, 65U, 1000U}) {
        diaglog::exchangeBackend(&log); // a fresh process
        DiagLogOpen(std::string(length, 'n').c_str());
        log.clear();
        DiagLogPrint("line");
        DiagLogPrintW(L"line");
        EXPECT_EQ(log.lines(), Lines{"line\n"});
        EXPECT_EQ(log.wideLines(), WideLines{L"line\n"});
    }
}

TEST(DiagLogTest, ANameOf64OrMoreCharactersLeavesThePrefixAsAnEarlierObjectSetIt) {
    LogRecorder log;
    DiagLogOpen("Earlier");
    DiagLogOpen(std::string(64, 'n').c_str());
    DiagLogPrint("line");
    DiagLogPrintW(L"line");
    DiagLogOpen(nullptr);
    DiagLogPrint("line");
    EXPECT_EQ(log.lines(), Lines(2, "[Earlier] line\n"));
    EXPECT_EQ(log.wideLines(), WideLines{L"[Earlier] line\n"});
}

TEST(DiagLogTest, APrefixIsCutAt63Characters) {
    LogRecorder log;
    struct Row {
        std::size_t nameLength;
        std::string prefix;
    };
    const Row rows[] = {
        {0, "[] "},
        {60, "[" + std::string(60, 'n') + "] "},
        {61, "[" + std::string(61, 'n') + "]"},
        {62, "[" + std::string(62, 'n')},
        {63, "[" + std::string(62, 'n')},
    };
    for (const Row &row : rows) {
        DiagLogOpen(std::string(row.nameLength, 'n').c_str());
        log.clear();
        DiagLogPrint("line");
        DiagLogPrintW(L"line");
        EXPECT_EQ(log.lines(), Lines{row.prefix + "line\n"});
        EXPECT_EQ(log.wideLines(), WideLines{std::wstring(row.prefix.begin(), row.prefix.end()) + L"line\n"});
    }
}

TEST(DiagLogTest, ThePrefixIsNoFormat) {
    LogRecorder log;
    DiagLogOpen("100%s%n");
    DiagLogPrint("line %d", 1);
    EXPECT_EQ(log.lines(), Lines{"[100%s%n] line 1\n"});
}

TEST(DiagLogTest, WithBothSwitchesOffThePrefixIsNotChanged) {
    LogRecorder log;
    DiagLogOpen("Earlier");
    log.switches = platform::LogSwitches{false, false};
    DiagLogOpen("Later");
    log.switches = platform::LogSwitches{true, false};
    DiagLogOpen(nullptr);
    DiagLogPrint("line");
    EXPECT_EQ(log.lines(), Lines{"[Earlier] line\n"});
}

TEST(DiagLogTest, DumpInEtwAloneSetsThePrefix) {
    LogRecorder log;
    log.switches = platform::LogSwitches{false, true};
    DiagLogOpen("Traced");
    log.switches = platform::LogSwitches{true, false};
    DiagLogOpen(nullptr);
    DiagLogPrint("line");
    EXPECT_EQ(log.lines(), Lines{"[Traced] line\n"});
}

TEST(DiagLogTest, AMissingKeyKeepsTheSwitchesAndStillSetsThePrefix) {
    LogRecorder log;
    log.switches = std::nullopt;
    DiagLogOpen("Second");
    DiagLogPrint("line");
    EXPECT_EQ(log.lines(), Lines{"[Second] line\n"});

    log.switches = platform::LogSwitches{true, true};
    DiagLogOpen("Third");
    log.switches = std::nullopt;
    DiagLogOpen("Fourth");
    DiagLogPrint("line");
    EXPECT_EQ(log.eventTraceLines(), WideLines{L"[Fourth] line\n"});
}

TEST(DiagLogTest, TheSwitchesAreReadAtEachOpening) {
    LogRecorder log;
    log.switches = platform::LogSwitches{false, false};
    DiagLogPrint("before");
    DiagLogOpen("Orvanel");
    DiagLogPrint("off");
    log.switches = platform::LogSwitches{true, false};
    DiagLogPrint("still off");
    DiagLogOpen("Orvanel");
    DiagLogPrint("on");
    EXPECT_EQ(log.messages(), (Lines{"before", "on"}));
}

TEST(DiagLogTest, TheEventLogIsOpenedOnce) {
    LogRecorder log;
    log.switches = platform::LogSwitches{true, true};
    for (int i = 0; i < 3; ++i)
        DiagLogOpen("Orvanel");
    EXPECT_EQ(log.openings, 1);
}

TEST(DiagLogTest, CloseEndsTheEventLogUntilTheNextOpening) {
    LogRecorder log;
    DiagLogClose(); // nothing to close
    log.switches = platform::LogSwitches{true, true};
    DiagLogOpen("Orvanel");
    DiagLogPrint("first");
    DiagLogClose();
    DiagLogClose();
    DiagLogPrint("dropped");
    EXPECT_EQ(log.lines(), Lines{}) << "the switch still sends the lines to the event log";
    DiagLogOpen("Orvanel");
    DiagLogPrint("second");
    EXPECT_EQ(log.eventTraceLines(), (WideLines{L"[Orvanel] first\n", L"[Orvanel] second\n"}));
    EXPECT_EQ(log.openings, 2);
}

TEST(DiagLogTest, TheDefaultLocationAndSwitchName) {
    LogRecorder log;
    DiagLogOpen("Orvanel");
    EXPECT_EQ(log.keyPath, L"SoftWare\\Brannock\\Tintmoor");
    EXPECT_EQ(log.dumpName, L"DumpMsg");
}

TEST(DiagLogTest, OpenKeyChoosesTheLocationAndTheSwitchName) {
    LogRecorder log;
    DiagLogOpenKey("Orvanel", L"Preview", L"DumpPreview", L"SoftWare\\Other");
    EXPECT_EQ(log.keyPath, L"SoftWare\\Other\\Preview");
    EXPECT_EQ(log.dumpName, L"DumpPreview");
    DiagLogOpenKey("Orvanel", L"Preview", nullptr, nullptr);
    EXPECT_EQ(log.keyPath, L"SoftWare\\Brannock\\Tintmoor\\Preview");
    EXPECT_EQ(log.dumpName, L"DumpMsg");
    DiagLogOpenKey("Orvanel", nullptr, nullptr, L"SoftWare\\Other");
    EXPECT_EQ(log.keyPath, L"SoftWare\\Other");
    DiagLogOpenKey("Orvanel", L"", nullptr, L"SoftWare\\Other");
    EXPECT_EQ(log.keyPath, L"SoftWare\\Other\\");
}

TEST(DiagLogTest, AKeyPathIsCutAt260Characters) {
    LogRecorder log;
    DiagLogOpenKey("Orvanel", std::wstring(300, L's').c_str(), nullptr, L"SoftWare\\Other");
    EXPECT_EQ(log.keyPath, L"SoftWare\\Other\\" + std::wstring(260 - 15, L's'));
    DiagLogOpenKey("Orvanel", L"sub", nullptr, std::wstring(260, L'b').c_str());
    EXPECT_EQ(log.keyPath, std::wstring(260, L'b'));
}

TEST(DiagLogTest, SixtyFourBitNumbersAndWideTexts) {
    LogRecorder log;
    DiagLogPrint("duration=%lld count=%d", std::int64_t{-9007199254740993}, 3);
    DiagLogPrintW(L"%s %S %lld", L"wide", "narrow", INT64_MAX);
    EXPECT_EQ(log.lines(), Lines{"[Orvanel] duration=-9007199254740993 count=3\n"});
    EXPECT_EQ(log.wideLines(), WideLines{L"[Orvanel] wide narrow 9223372036854775807\n"});
}

TEST(DiagLogTest, ScopeEndPrintsEachNameToTheOutput) {
    LogRecorder log;
    {
        std::string name = "Orvanel::Create";
        const DiagLogScopeEnd scope(name.c_str(), L"Wide::Create");
        name = "gone"; // the record has its own copy
        EXPECT_EQ(log.output(), L"");
    }
    EXPECT_EQ(log.output(), L"Orvanel::Create end\nWide::Create end\n");
    log.clear();
    { const DiagLogScopeEnd scope("100%s", nullptr); }
    { const DiagLogScopeEnd scope(nullptr, L"wide"); }
    { const DiagLogScopeEnd scope(nullptr, nullptr); }
    EXPECT_EQ(log.output(), L"100%s end\nwide end\n");
    EXPECT_EQ(log.lines(), Lines{}) << "not the debugger's";
}

TEST(DiagLogTest, ScopeEndAsksTheSwitchWhenItGoes) {
    LogRecorder log;
    const auto change = [&](bool dump) {
        log.switches = platform::LogSwitches{dump, false};
        DiagLogOpen("Orvanel");
    };
    {
        const DiagLogScopeEnd scope("off at the end", nullptr);
        change(false);
    }
    {
        const DiagLogScopeEnd scope("on at the end", nullptr);
        change(true);
    }
    EXPECT_EQ(log.output(), L"on at the end end\n");
}

TEST(DiagLogTest, ThreadsNeverMixTheirLinesWhileTheLogIsReopened) {
    LogRecorder log;
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    std::atomic<int> running{kThreads};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&running, t] {
            const std::string text(static_cast<std::size_t>(100 * (t + 1)), static_cast<char>('a' + t));
            for (int i = 0; i < kLines; ++i)
                DiagLogPrint("%s", text.c_str());
            --running;
        });
    // Prefixes of different lengths: a torn one would show.
    for (int i = 0; running > 0; ++i)
        DiagLogOpen(i % 2 ? "Orvanel" : "A much longer name of the same thing");
    for (std::thread &thread : threads)
        thread.join();

    std::vector<int> counts(kThreads);
    for (const std::string &line : log.lines()) {
        const std::size_t start = line.starts_with("[Orvanel] ") ? 10 : 39;
        ASSERT_TRUE(start == 10 || line.starts_with("[A much longer name of the same thing] ")) << line;
        const auto thread = static_cast<std::size_t>(line[start] - 'a');
        ASSERT_LT(thread, counts.size());
        ASSERT_EQ(line.substr(start), std::string(100 * (thread + 1), line[start]) + "\n");
        ++counts[thread];
    }
    EXPECT_EQ(counts, std::vector<int>(kThreads, kLines));
}

} // namespace
