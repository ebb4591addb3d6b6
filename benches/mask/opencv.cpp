// SPDX-License-Identifier: MIT
// OpenCV's polygon fill on an 8-bit picture, then a scan. It knows no curves: it gets this project's flattened
// polyline, flattening included in its time, in the sixteenths that the polyline has.
#include <opencv2/imgproc.hpp>

#include "mask/outline_figure.h"
#include "peers.h"

namespace bench {
namespace {

class OpenCv : public Rasterizer {
  public:
    OpenCv(int width, int height) : m_picture(height, width, CV_8UC1) { cv::setNumThreads(1); }

    void encode(const Outline &outline, Runs &runs) override {
        Quill::buildOutline(outline.data(), static_cast<int>(outline.size()), {m_picture.cols, m_picture.rows},
                            m_polyline);
        m_polygon.clear();
        for (const Quill::FixedPoint &vertex : m_polyline)
            m_polygon.emplace_back(vertex.x, vertex.y);
        m_picture.setTo(0);
        const cv::Point *polygon = m_polygon.data();
        const int count = static_cast<int>(m_polygon.size());
        constexpr int kFractionBits = 4;
        cv::fillPoly(m_picture, &polygon, &count, 1, cv::Scalar(255), cv::LINE_8, kFractionBits);
        runs.clear();
        appendRuns(m_picture.data, static_cast<std::ptrdiff_t>(m_picture.step), m_picture.cols, m_picture.rows, runs);
    }

  private:
    cv::Mat m_picture;
    Quill::VertexBuffer m_polyline;
    std::vector<cv::Point> m_polygon;
};

} // namespace

std::unique_ptr<Rasterizer> makeOpenCv(int width, int height) {
    return std::make_unique<OpenCv>(width, height);
}

} // namespace bench
