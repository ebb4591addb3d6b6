// SPDX-License-Identifier: MIT
// All that the diagnostic log says in one long session, in its order, against a kept transcript: the same on every
// platform. A table of the contract's texts shows that none is left out.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

#include "callback/py_ref.h"
#include "mask/mask_handler.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/testing/python_environment.h"
#include "overlay/testing/recording_canvas.h"
#include "support/dib_surface.h"
#include "texture/allocator.h"
#include "transcript/ordered_log.h"
#include "transcript/texts.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

constexpr int kWidth = 200;
constexpr int kHeight = 100;

/// A frame is ten units long.
class Syncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override { return 105; }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 10; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) override { return duration / 10; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return true; }
};

/// What a host does from the first line of the log to the last.
class Session {
  public:
    std::vector<std::string> run() {
        std::srand(1);
        canvas.pixels.resize(std::size_t{kWidth} * kHeight * 4);
        object = std::make_unique<Orvanel>();
        place();
        drawAndConvert();
        keyframes();
        fit();
        show();
        rasterize();
        bitmaps();
        end();
        return log.lines();
    }

  private:
    void place() {
        log.head("a display, the same again, another rectangle, the first again");
        for (int round = 0; round < 2; ++round)
            object->SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
        object->SetVideoCoordinate(kWidth, kHeight, 10, 5, 180, 90);
        object->SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
        object->SetVideoInfo(0, 0, 0, 1000);
    }

    void drawAndConvert() {
        const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", kWidth, kHeight));
        log.head("an outline that is too short: refused twice, and shown without an end");
        object->AddPoint(60, 20);
        object->Convert2Mask(true);
        // None, without a reference.
        object->Convert2SelectionLineUS(size.get());
        object->PrepareKeyframe(0);
        log.head("closed: the first keyframe is stored without an end");
        object->AddPoint(140, 50);
        object->AddPoint(60, 80);
        object->Interactive(ECS_MOUSE_DOWN, 60, 20);
        object->Interactive(ECS_MOUSE_UP);
        log.head("converted again: stored over the one that is there");
        object->Convert2Mask(false);
        log.head("every keyframe refreshed");
        object->Convert2Mask(true);
        log.head("runs");
        PyRef::adopt(object->Convert2SelectionLineUS(size.get()));
    }

    void keyframes() {
        log.head("a later position: the keyframe is loaded; stored there, a second one");
        object->PrepareKeyframe(100);
        object->CacheCurrentKeyframe();
        log.head("that one, shown again without being drawn");
        object->PrepareKeyframe(100);
        object->PrepareKeyframe(100);
        log.head("between the two");
        object->PrepareKeyframe(50);
        log.head("before the first, and past the end of the clip");
        object->PrepareKeyframe(-5);
        object->PrepareKeyframe(1000);
        log.head("a record of the caller's, filled and drawn twice: placed once");
        const std::unique_ptr<Quill::KeyFrameMaskInfo> record(object->GetKeyFrameMaskInfo(7));
        record->placement = {};
        object->DrawExistKeyFrame(record.get());
        record->maskBuffer.resize(2);
        object->DrawExistKeyFrame(record.get());
        log.head("removed: one, none, and the last");
        object->RemoveSpecificKeyFrame(100);
        object->RemoveSpecificKeyFrame(100);
        for (const LONGLONG duration : {LONGLONG{-1}, LONGLONG{0}})
            object->RemoveSpecificKeyFrame(duration);
    }

    using Places = std::vector<std::pair<int, int>>;
    using Runs = std::vector<Quill::MaskRunF>;

    void draw(const Places &places) {
        object->DeleteAllPoints();
        for (const auto &[x, y] : places)
            object->AddPoint(x, y);
        object->Interactive(ECS_MOUSE_DOWN, places[0].first, places[0].second);
        object->Interactive(ECS_MOUSE_UP);
    }
    static Runs rectangle(int left, int top, int right, int bottom) {
        Runs runs;
        for (int y = top; y <= bottom; ++y)
            runs.push_back({static_cast<float>(left) / kWidth, static_cast<float>(y) / kHeight,
                            static_cast<float>(right - left + 1) / kWidth});
        return runs;
    }
    void adjust(const Runs &runs) {
        const PyRef list = PyRef::adopt(buildRunList(runs));
        const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", kWidth, kHeight));
        PyRef::adopt(object->AdjustPoints(size.get(), list.get(), size.get()));
    }

    void fit() {
        log.head("no runs: only converted");
        draw({{60, 20}, {140, 50}, {60, 80}});
        adjust({});
        log.head("on the border already");
        draw({{50, 40}, {60, 40}, {70, 40}, {70, 50}, {70, 60}, {60, 60}, {50, 60}, {50, 50}});
        adjust(rectangle(50, 40, 70, 60));
        log.head("moved onto it, and put in order");
        draw({{60, 20}, {140, 20}, {140, 80}, {60, 80}});
        adjust(rectangle(70, 30, 130, 70));
        log.head("no video rectangle to find the anchors in");
        draw({{60, 20}, {140, 20}, {140, 80}, {60, 80}});
        object->SetVideoCoordinate(kWidth, kHeight, 0, 0, 0, 0);
        adjust(rectangle(70, 30, 130, 70));
        object->SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
        log.head("anchors without control points");
        restoreAnchorsAlone();
        adjust(rectangle(90, 40, 110, 60));
    }
    /// Ten anchors and not one control point between them, as a host's stored data may hold them.
    void restoreAnchorsAlone() {
        std::vector<MPointF> list;
        for (int number = 0; number < 10; ++number)
            list.push_back({kAnchorPoint, 0.1F * static_cast<float>(number),
                            0.05F * static_cast<float>(number * number % 17), 0, 0, 0});
        const PyRef setting = PyRef::adopt(PyDict_New());
        Py_INCREF(Py_False);
        storeSetting(setting.get(), 0, Py_False);
        storeSetting(setting.get(), 2, buildPointBytes(list));
        object->SetDevSetting(setting.get());
    }

    void show() {
        log.head("a map, a frame, the same frame again, and another map");
        draw({{60, 20}, {140, 20}, {140, 80}, {60, 80}});
        object->Create(nullptr, nullptr, &syncer);
        object->GetAllocator()->UpdateCounter();
        object->GetAllocator()->UpdateCounter();
        object->Create(nullptr, nullptr, &syncer);
    }

    void rasterize() {
        log.head("lines and polygons without a place to go, without points, and as they should be");
        const MPoint point;
        Quill::MaskHandler::m_fnClear(nullptr, 1, 1, 4, nullptr);
        Quill::MaskHandler::m_fnDrawLine(point, point, nullptr, nullptr, nullptr);
        Quill::MaskHandler::m_fnGetLinePoints(point, point, 0, nullptr);
        std::vector<std::uint8_t> pixels(24 * 8);
        std::uint8_t *buffer = pixels.data();
        std::uint8_t *missing = nullptr;
        const std::vector<MPoint> outline(9);
        const int few = 2;
        const auto nine = static_cast<int>(outline.size());
        Quill::MaskHandler::m_fnDrawPolygonMask(nullptr, nine, 8, 8, 24, &buffer);
        Quill::MaskHandler::m_fnDrawPolygonMask(outline.data(), nine, 8, 8, 24, &missing);
        Quill::MaskHandler::m_fnDrawPolygonMask(outline.data(), few, 8, 8, 24, &buffer);
        Quill::MaskHandler::m_fnDrawPolygonMask(outline.data(), nine, 8, 8, 24, &buffer);
        Quill::MaskHandler::m_fnFillBezierCurveMask(nullptr, nine, 8, 8, 24, &buffer, false);
        Quill::MaskHandler::m_fnFillBezierCurveMask(outline.data(), nine, 8, 8, 24, &missing, false);
        Quill::MaskHandler::m_fnFillBezierCurveMask(outline.data(), few, 8, 8, 24, &buffer, false);
        Quill::MaskHandler::m_fnFillBezierCurveMask(outline.data(), nine, 8, 8, 24, &buffer, false);
        log.head("the encoders, each refusing once");
        std::vector<Quill::MaskRun> runs;
        Quill::RowListMask rows;
        rows.width = rows.height = 8;
        std::vector<Quill::MaskRunF> fractions;
        for (const int count : {few, nine}) {
            Quill::MaskHandler::ConvertPoints2Mask(outline.data(), count, 8, 8, false, nullptr, &runs);
            Quill::MaskHandler::ConvertPoints2Mask(outline.data(), count, &rows);
            Quill::MaskHandler::ConvertPoints2MaskUS(outline.data(), count, 0, 0, 8, 8, false, nullptr, &fractions);
        }
        log.head("samples, and an interpolation that makes its mask");
        Quill::SegmentSamples samples;
        Quill::MaskHandler::GenAllPoints(nullptr, nine, 8, 8, &samples);
        Quill::MaskHandler::GenAllPoints(outline.data(), nine, 8, 8, nullptr);
        Quill::MaskHandler::GenAllPoints(outline.data(), nine, 8, 8, &samples);
        Quill::KeyFrameMaskInfo first;
        Quill::KeyFrameMaskInfo second;
        Quill::KeyFrameMaskInfo between;
        first.pointsF.resize(9);
        second.pointsF.resize(9);
        second.duration = -9007199254740993;
        Quill::MaskHandler::CalcKeyFrame(first, second, between, true);
    }

    static platform::DibCalls drawingSystem(bool hasContext) {
        static int thing = 0;
        static bool makesContext = false;
        makesContext = hasContext;
        return {[] { return makesContext ? reinterpret_cast<platform::DeviceContext>(&thing) : nullptr; },
                [](platform::DeviceContext) {}, [] {},
                [](platform::DeviceContext, const platform::DibHeader &, void **) -> HBITMAP { return nullptr; },
                [] { return 0x57U; }};
    }
    void bitmaps() {
        log.head("bitmaps that cannot be made");
        HBITMAP bitmap = nullptr;
        createDibSection32(drawingSystem(true), 0, 1, &bitmap, nullptr);
        createDibSection32(drawingSystem(false), 1, 1, &bitmap, nullptr);
        createDibSection32(drawingSystem(true), 1, 1, &bitmap, nullptr);
    }

    void end() {
        log.head("the end, and the destructor's");
        object->Uninitialize();
        object.reset();
    }

    OrderedLog log;
    RecordingCanvas canvas;
    CanvasForTest registration{&canvas};
    Syncer syncer;
    std::unique_ptr<Orvanel> object;
};

/// Whether a line of the transcript is what a format makes, whatever the numbers.
bool isMadeBy(const LogText &text, const std::string &line) {
    std::string expected = (text.wide ? "w [Orvanel] " : "a [Orvanel] ") + std::string(text.format) + "\n";
    for (std::size_t at = 0; (at = expected.find('\n', at)) != std::string::npos;)
        expected.replace(at, 1, "\\n");
    std::size_t at = 0;
    for (std::size_t from = 0; from < expected.size();) {
        if (expected[from] == '%') {
            from = expected.find_first_of("dx", from) + 1;
            const std::size_t digits = line.find_first_not_of("-0123456789abcdef#", at);
            if (digits == at)
                return false;
            at = digits;
        } else if (at < line.size() && line[at] == expected[from]) {
            ++at;
            ++from;
        } else {
            return false;
        }
    }
    return at == line.size();
}

std::string joined(const std::vector<std::string> &lines) {
    std::string all;
    for (const std::string &line : lines)
        all += line + "\n";
    return all;
}

TEST(Transcript, OfALongSessionIsTheKeptOne) {
    const std::string said = joined(Session().run());
    std::ifstream file(ORVANEL_TRANSCRIPT, std::ios::binary);
    std::ostringstream kept;
    kept << file.rdbuf();
    EXPECT_EQ(said, kept.str()) << "\nThe whole of it:\n" << said;
}

TEST(Transcript, HoldsEveryTextOfTheContract) {
    const std::vector<std::string> lines = Session().run();
    for (const LogText &text : kLogTexts) {
        bool isSaid = false;
        for (const std::string &line : lines)
            isSaid = isSaid || isMadeBy(text, line);
        EXPECT_TRUE(isSaid) << text.format;
    }
}

TEST(Transcript, HoldsNothingElse) {
    for (const std::string &line : Session().run()) {
        bool isKnown = line[0] == '#';
        for (const LogText &text : kLogTexts)
            isKnown = isKnown || isMadeBy(text, line);
        EXPECT_TRUE(isKnown) << line;
    }
}

} // namespace
