// SPDX-License-Identifier: MIT
// Fitting the outline to a mask that the host supplies: anchors go to the mask's border, long gaps get anchors of their
// own, the shape's extreme points are added, and all of them are put in border order. Places on the border are chosen
// at random among equally good ones (fitting/random.h).
//
// Only the live outline is fitted. It is stored as the keyframe of the present position; a host that wants it in every
// keyframe calls Convert2Mask(true).

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "callback/python.h"
#include "fitting/fit.h"
#include "overlay/event_queue.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"
#include "support/diag_log.h"

namespace {

/// Places of the anchors, in outline order.
std::vector<fitting::Place> anchorPlaces(const Chain &chain) {
    std::vector<fitting::Place> places;
    for (const std::size_t index : anchorPositions(chain.points))
        places.push_back({chain.pointsF[index].x, chain.pointsF[index].y});
    return places;
}

/// Display coordinate of a mask's column or row.
std::int32_t displayCoordinate(std::int32_t position, int maskExtent, std::int32_t extent, std::int32_t origin) {
    return truncateToInt32(static_cast<double>(extent) * position / maskExtent + origin + 0.5);
}

/// How far, in mask pixels, an anchor that was put on a display pixel can be from the mask pixel that it stands for.
double displayReach(const PixelRect &rect, int maskWidth, int maskHeight) {
    const auto pixels = [](int mask, std::int32_t display) {
        return std::abs(static_cast<double>(mask) / std::max(display, 1));
    };
    return 2 + std::max(pixels(maskWidth, rect.width), pixels(maskHeight, rect.height));
}

} // namespace

PyObject *Orvanel::AdjustPoints(PyObject *ignored, PyObject *runs, PyObject *size) {
    // What does not parse counts as nothing. Its error goes at once: the next conversion can run Python code, which
    // must not meet it, nor must the caller at some later line.
    const std::vector<Quill::MaskRunF> mask = readRunList(runs);
    float unused[2];
    PyArg_ParseTuple(ignored, "ff", &unused[0], &unused[1]);
    PyErr_Clear();
    int width = 0;
    int height = 0;
    parseIntPair(size, width, height);
    PyErr_Clear();

    std::vector<ECallBack_State> events;
    {
        // Both locks are held for the whole fit: the interpreter lock is let go only while the other one has to be
        // waited for.
        const TextureLockGuard lock(m_textureLock);
        const EventQueue queue(m_eventQueue, events);
        DiagLogPrint("Orvanel::AdjustPoints() enter\n");
        FindTargetPointsFromMask(mask, width, height);
        Convert2Mask(false);
        markEdited();
        DiagLogPrint("Orvanel::AdjustPoints() end\n");
    }
    for (const ECallBack_State event : events)
        raise(event);
    Py_RETURN_NONE;
}

HRESULT Orvanel::FindTargetPointsFromMask(const std::vector<Quill::MaskRunF> &runs, int width, int height) {
    if (runs.empty())
        return E_ABORT;
    std::optional<fitting::Target> target = fitting::Target::decode(runs, width, height);
    if (!target)
        return E_ABORT;
    // An outline that is still being drawn is closed first: what leads from its last anchor to the first is fitted too.
    if (countAnchors(m_points) > 1 && !isClosed(liveChain()))
        closeChain(liveChain());
    std::vector<fitting::Place> anchors = anchorPlaces(liveChain());

    // The outline's polygon would be drawn over the mask here, to shift the outline by the distance of both centroids.
    // The drawing has never had an effect: there is no graphics context for the one-byte pixels of the mask. Hosts know
    // the fit without the shift, and so the outline's centroid is the mask's on every platform.
    const fitting::Pixel maskCentroid = target->centroid();
    const fitting::Pixel outlineCentroid = maskCentroid;
    const fitting::Pixel shift = {maskCentroid.x - outlineCentroid.x, maskCentroid.y - outlineCentroid.y};
    DiagLogPrintW(L"Orvanel::FindTargetPointsFromMask (%d, %d) - (%d, %d) = (%d, %d)", maskCentroid.x, maskCentroid.y,
                  outlineCentroid.x, outlineCentroid.y, shift.x, shift.y);

    m_geometryChanged = true;
    const std::size_t onBorder = target->snap(anchors, shift);
    placeAnchors(anchors);
    fillGaps(*target, anchors, width, height);
    if (onBorder != anchors.size() && m_points.size() > kFewestMaskPoints) {
        addExtremes(target->extremes(), width, height);
        FindTargetPointsFromMask_IntersecRemoval(*target, width, height);
        DiagLogPrintW(L"Orvanel::FindTargetPointsFromMask %d points not on border",
                      static_cast<int>(anchors.size() - onBorder));
    } else {
        DiagLogPrintW(L"Orvanel::FindTargetPointsFromMask skip bounding box finding");
    }
    return S_OK;
}

void Orvanel::placeAnchors(const std::vector<fitting::Place> &anchors) {
    const std::vector<std::size_t> positions = anchorPositions(m_points);
    for (std::size_t number = 0; number < positions.size(); ++number)
        placeAnchor(liveChain(), positions[number], anchors[number].x, anchors[number].y);
}

MPoint Orvanel::displayPoint(const fitting::Pixel &pixel, int width, int height) const {
    return {kAnchorPoint,
            displayCoordinate(pixel.x, width, m_videoRect.width, m_videoRect.left),
            displayCoordinate(pixel.y, height, m_videoRect.height, m_videoRect.top),
            0,
            0,
            0};
}

void Orvanel::fillGaps(fitting::Target &target, const std::vector<fitting::Place> &anchors, int width, int height) {
    std::vector<Insertion> insertions;
    // Chain position of the anchor that a pair begins with; the first pair is the closing one.
    std::ptrdiff_t position = -3;
    for (std::size_t number = 0; number < anchors.size(); ++number, position += 3) {
        const bool isClosing = number == 0;
        const fitting::Pixel previous = target.pixelOf(isClosing ? anchors.back() : anchors[number - 1]);
        const fitting::Pixel current = target.pixelOf(anchors[number]);
        if (!(std::sqrt(squaredDistance(previous, current)) > target.longestGap()))
            continue;
        const MPoint point = displayPoint(target.fillGap(previous, current), width, height);
        if (isClosing) {
            insertions.push_back({point, m_pointsF.size() - 2});
        } else {
            insertions.push_back({point, static_cast<std::size_t>(position) + 1});
            position += 3;
        }
    }
    insertPoints(liveChain(), insertions);
}

void Orvanel::addExtremes(const fitting::ExtremeTable &extremes, int width, int height) {
    const auto add = [&](std::size_t entry) {
        const MPoint point = displayPoint(extremes[entry], width, height);
        AddPoint(point.x, point.y);
    };
    const auto addUnless = [&](std::size_t entry, std::size_t one, std::size_t other) {
        if (extremes[entry] != extremes[one] && extremes[entry] != extremes[other])
            add(entry);
    };
    add(2);
    add(4);
    addUnless(1, 4, 2);
    addUnless(3, 6, 2);
    addUnless(9, 6, 8);
    addUnless(7, 4, 8);
    add(6);
    add(8);
}

HRESULT Orvanel::FindTargetPointsFromMask_IntersecRemoval(fitting::Target &target, int width, int height) {
    DiagLogPrint("Orvanel::FindTargetPointsFromMask_IntersecRemoval() enter\n");
    const std::vector<std::uint32_t> order =
        target.trace(anchorPlaces(liveChain()), displayReach(m_videoRect, width, height));
    const std::size_t found = 3 * order.size();
    if (found > m_points.size()) {
        DiagLogPrintW(L"Orvanel::FindTargetPointsFromMask_IntersecRemoval Impossible,+ redundant points");
        return E_FAIL;
    }
    if (found == m_points.size()) {
        reorderAnchors(liveChain(), order);
        DiagLogPrintW(L"Orvanel::FindTargetPointsFromMask_IntersecRemoval Ordered");
    } else {
        DiagLogPrintW(L"Orvanel::FindTargetPointsFromMask_IntersecRemoval Some Points missed");
    }
    DiagLogPrint("Orvanel::FindTargetPointsFromMask_IntersecRemoval() end\n");
    return S_OK;
}
