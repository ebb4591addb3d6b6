// SPDX-License-Identifier: MIT
// insertPoints against insertPoint one by one.

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "overlay/chain.h"
#include "overlay/types/placement.h"

namespace {

struct TestChain {
    std::vector<MPoint> points;
    std::vector<MPointF> pointsF;
    PixelRect placement;

    operator Chain() { return {points, pointsF, placement}; }
};

class Insertions : public testing::Test {
  protected:
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(m_random() % limit); }

    /// Flags of every kind, and twins that are not exactly those of their points.
    void add(TestChain &chain, std::uint32_t type) {
        const auto coordinate = [this] { return static_cast<std::int32_t>(below(4000)) - 1000; };
        const MPoint point = {type, coordinate(), coordinate(), below(3) / 2, below(2), below(2)};
        chain.points.push_back(point);
        chain.pointsF.push_back(normalisePoint(point, chain.placement));
        chain.pointsF.back().x += 0.001F * static_cast<float>(below(3));
    }

    TestChain emptyChain() {
        const auto extent = static_cast<std::int32_t>(below(1000));
        return {{}, {}, {7, -9, extent, extent / 2 + 1}};
    }
    /// Anchor, control, control, over and over.
    TestChain closedChain(std::uint32_t anchors) {
        TestChain chain = emptyChain();
        for (std::uint32_t index = 0; index < 3 * anchors; ++index)
            add(chain, index % 3 == 0 ? kAnchorPoint : kControlPoint);
        return chain;
    }
    /// Any points in any order, as a host's stored data may hold them.
    TestChain anyChain(std::uint32_t most) {
        TestChain chain = emptyChain();
        const std::uint32_t controls = 1 + below(9);
        const std::uint32_t points = below(most);
        for (std::uint32_t index = 0; index < points; ++index)
            add(chain, below(30) == 0 ? 7 : below(1 + controls) == 0 ? kAnchorPoint : kControlPoint);
        return chain;
    }

    MPoint anyPoint(std::uint32_t type = kAnchorPoint) {
        return {
            type, static_cast<std::int32_t>(below(2000)), static_cast<std::int32_t>(below(2000)), below(2), below(2),
            1};
    }
    /// The places of a fit's insertions: the closing segment first, then some of the others, in order.
    std::vector<Insertion> asAFitInserts(const Chain &chain, std::uint32_t oneIn) {
        std::vector<Insertion> insertions;
        const std::size_t anchors = countAnchors(chain.points);
        std::size_t position = 1;
        if (chain.size() > 1 && below(2) == 0)
            insertions.push_back({anyPoint(), chain.size() - 2});
        for (std::size_t pair = 1; pair < anchors; ++pair, position += 3) {
            if (below(oneIn) != 0)
                continue;
            insertions.push_back({anyPoint(), position});
            position += 3;
        }
        return insertions;
    }
    std::vector<Insertion> anywhere(std::size_t count) {
        std::vector<Insertion> insertions;
        for (std::size_t number = 0; number < count; ++number)
            insertions.push_back({anyPoint(below(5) == 0 ? kControlPoint : kAnchorPoint), below(200)});
        return insertions;
    }

    static void expectTheSame(TestChain chain, const std::vector<Insertion> &insertions) {
        TestChain plain = chain;
        for (const Insertion &insertion : insertions)
            insertPoint(plain, insertion.point, insertion.index);
        insertPoints(chain, insertions);
        ASSERT_EQ(chain.points, plain.points);
        // Twins of a rectangle without an extent are no numbers, and so not equal to themselves.
        ASSERT_EQ(chain.pointsF.size(), plain.pointsF.size());
        for (std::size_t index = 0; index < plain.pointsF.size(); ++index)
            ASSERT_EQ(std::memcmp(&chain.pointsF[index], &plain.pointsF[index], sizeof(MPointF)), 0) << index;
    }

  private:
    std::mt19937 m_random{1};
};

TEST_F(Insertions, OfAFit) {
    for (int round = 0; round < 3000; ++round) {
        TestChain chain = closedChain(below(40));
        expectTheSame(chain, asAFitInserts(chain, 1 + below(4)));
        if (HasFatalFailure())
            return;
    }
}

TEST_F(Insertions, OfAFitToPointsInAnyOrder) {
    for (int round = 0; round < 3000; ++round) {
        TestChain chain = anyChain(90);
        expectTheSame(chain, asAFitInserts(chain, 1 + below(3)));
        if (HasFatalFailure())
            return;
    }
}

TEST_F(Insertions, Anywhere) {
    for (int round = 0; round < 3000; ++round) {
        expectTheSame(round % 2 == 0 ? closedChain(below(20)) : anyChain(50), anywhere(below(30)));
        if (HasFatalFailure())
            return;
    }
}

TEST_F(Insertions, WithoutAnchorsNothingIsInserted) {
    TestChain chain = emptyChain();
    insertPoints(chain, std::vector<Insertion>{{anyPoint(), 0}});
    EXPECT_TRUE(chain.points.empty());
    add(chain, kControlPoint);
    insertPoints(chain, std::vector<Insertion>{{anyPoint(), 0}});
    EXPECT_EQ(chain.points.size(), 1U);
}

TEST_F(Insertions, OfManyPointsMoveNoneTwice) {
    // One by one this would move a million points two hundred thousand times.
    TestChain chain = closedChain(200'000);
    const std::vector<Insertion> insertions = asAFitInserts(chain, 1);
    const std::size_t before = chain.points.size();
    insertPoints(chain, insertions);
    EXPECT_EQ(chain.points.size(), before + 3 * insertions.size());
    EXPECT_EQ(chain.pointsF.size(), chain.points.size());
}

TEST_F(Insertions, BehindMoreControlPointsThanAnchors) {
    // The segment of the last anchor before hundreds of thousands of control points is looked up from among them.
    TestChain chain = emptyChain();
    constexpr std::uint32_t kAnchors = 100'000;
    for (std::uint32_t index = 0; index < 8 * kAnchors; ++index)
        add(chain, index < kAnchors ? kAnchorPoint : kControlPoint);
    const std::vector<Insertion> insertions = asAFitInserts(chain, 1);
    insertPoints(chain, insertions);
    EXPECT_EQ(countAnchors(chain.points), kAnchors + insertions.size());
}

} // namespace
