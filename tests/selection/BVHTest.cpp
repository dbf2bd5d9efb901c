#include "selection/Arena.h"
#include "selection/BVHBuilder.h"
#include "selection/BVHNode.h"
#include "selection/PlaneBoundedVolume.h"
#include "selection/PrimitiveContainer.h"
#include "selection/Ray.h"
#include "tests/selection/LiteralBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace vrn::selection {

namespace {

using visual::Box;
using visual::Ray;
using Pos = rob::PosTemplate<float>;
using Line = rob::LineTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;
using Found = std::vector<BVHPrimitive*>;
using testing::ElementsAre;
using testing::ElementsAreArray;

/// Answers every query with a hit at `distance`, and counts the questions.
class Probe : public BVHPrimitive {
public:
    explicit Probe(const Box& bounds) { box = bounds; }
    Result intersect(const Ray& /*ray*/) override { return answer(); }
    Result intersect(const Triangle& /*triangle*/) override { return answer(); }
    Result intersect(const Line& /*line*/) override { return answer(); }
    void processIntersectionsWith(const Box& /*region*/,
                                  std::function<void(unsigned int)> visit) const override {
        visit(static_cast<unsigned>(number));
    }

    bool hits = true;
    float distance = 1;
    int number = 0;
    int questions = 0;

private:
    Result answer() {
        ++questions;
        Result result;
        result.hit = hits;
        result.distance = distance;
        result.index = number;
        return result;
    }
};

/// Boxes of half size `half` about points, in order.
class Bvh : public testing::Test {
protected:
    Probe* add(const Box& box) {
        auto* probe = new Probe(box);
        probe->number = static_cast<int>(container.primitives.size());
        container.primitives.push_back(probe);
        return probe;
    }
    Probe* add(float x, float y, float z, float half = 1) {
        return add(Box(x - half, y - half, z - half, x + half, y + half, z + half));
    }
    void build() { container.tree = BVHBuilder(&container).build(); }
    template <class Query>
    Found candidates(const Query& query) {
        Found found;
        container.tree.intersect(query, found);
        return found;
    }
    const BVHInnerNode& rootSplit() {
        EXPECT_EQ(container.tree.root->type, BVHNode::Type::Inner);
        return static_cast<const BVHInnerNode&>(*container.tree.root);
    }
    static Found below(BVHNode* node) {
        Found found;
        node->collectPrimitives(found);
        return found;
    }

    PrimitiveContainer container;
    const Ray along{{-1000, 0, 0}, {1, 0, 0}};
    const Line through{{-1000, 0, 0}, {1000, 0, 0}};
    const Triangle across{{-1000, 0, 0}, {1000, 1, 0}, {1000, -1, 0}};
    const Box everywhere{-1000, -1000, -1000, 1000, 1000, 1000};
};

/// The volume on the negative side of one plane: x below `limit`.
PlaneBoundedVolume XBelow(float limit) {
    PlaneBoundedVolume volume;
    volume.addPlane({limit, 0, 0}, {limit, 1, 0}, {limit, 0, 1});
    return volume;
}

void ExpectSameTree(const BVHNode* node, const LiteralNode* literal) {
    ASSERT_EQ(node->box.min, literal->box.min);
    ASSERT_EQ(node->box.max, literal->box.max);
    ASSERT_EQ(node->box.center, literal->box.center);
    if (!literal->left) {
        ASSERT_EQ(node->type, BVHNode::Type::Leaf);
        const auto* leaf = static_cast<const BVHLeaf*>(node);
        ASSERT_THAT(Found(leaf->primitives.begin(), leaf->primitives.begin() + leaf->count),
                    ElementsAreArray(literal->primitives));
        return;
    }
    ASSERT_EQ(node->type, BVHNode::Type::Inner);
    const auto* inner = static_cast<const BVHInnerNode*>(node);
    ASSERT_EQ(inner->axis, literal->axis);
    ASSERT_NO_FATAL_FAILURE(ExpectSameTree(inner->left, literal->left.get()));
    ASSERT_NO_FATAL_FAILURE(ExpectSameTree(inner->right, literal->right.get()));
}

}  // namespace

// --- building

TEST_F(Bvh, AnEmptyContainerHasNoRootAndEveryQueryAnswersNothing) {
    build();
    EXPECT_EQ(container.tree.root, nullptr);
    Probe other(everywhere);
    Found found{&other};
    container.tree.intersect(along, found);
    container.tree.intersect(through, found);
    container.tree.intersect(across, found);
    container.tree.intersect(everywhere, found);
    container.tree.intersect(PlaneBoundedVolume(), found);
    // Not even an empty line is looked at.
    container.tree.intersect(Line{}, found);
    EXPECT_THAT(found, ElementsAre(&other));
    EXPECT_FALSE(container.bvhIntersect(along).hit);
    EXPECT_TRUE(container.bvhIntersect(along).valid);
    EXPECT_FALSE(container.bvhIntersect(through).hit);
    EXPECT_FALSE(container.bvhIntersect(across).hit);
    container.forEachIntersection(everywhere, [](unsigned) { FAIL(); });
}

TEST_F(Bvh, AContainerWhosePrimitivesAreAllDisabledHasNoRoot) {
    for (int i = 0; i < 6; ++i) add(static_cast<float>(i), 0, 0)->enabled = false;
    build();
    EXPECT_EQ(container.tree.root, nullptr);
}

TEST_F(Bvh, OneToFourPrimitivesAreASingleLeafAndFiveAreSplit) {
    Found all;
    for (int i = 1; i <= 4; ++i) {
        all.push_back(add(100.0f * static_cast<float>(i), 0, 0));
        build();
        ASSERT_EQ(container.tree.root->type, BVHNode::Type::Leaf);
        EXPECT_THAT(below(container.tree.root), ElementsAreArray(all));
    }
    add(500, 0, 0);
    build();
    EXPECT_EQ(container.tree.root->type, BVHNode::Type::Inner);
}

TEST_F(Bvh, TheNumbersOfNodeTypesAreZeroForInnerNodesAndOneForLeaves) {
    EXPECT_EQ(static_cast<int>(BVHNode::Type::Inner), 0);
    EXPECT_EQ(static_cast<int>(BVHNode::Type::Leaf), 1);
}

TEST_F(Bvh, FivePrimitivesAtOnePlaceSplitByIndexIntoTwoAndThree) {
    Found all;
    for (int i = 0; i < 5; ++i) all.push_back(add(7, 7, 7));
    build();
    EXPECT_THAT(below(rootSplit().left), ElementsAre(all[0], all[1]));
    EXPECT_THAT(below(rootSplit().right), ElementsAre(all[2], all[3], all[4]));
    EXPECT_EQ(rootSplit().axis, 2u);
}

TEST_F(Bvh, CentroidsThatSpan39Point9AreHalvedByIndexAndThoseThatSpan40AreNot) {
    for (const float x : {39.9f, 0.0f, 0.0f, 0.0f, 0.0f}) add(x, 0, 0);
    build();
    EXPECT_EQ(below(rootSplit().left).size(), 2u);
    EXPECT_EQ(rootSplit().axis, 0u);

    PrimitiveContainer wider;
    for (const float x : {40.0f, 0.0f, 0.0f, 0.0f, 0.0f}) {
        auto* probe = new Probe(Box(x - 1, -1, -1, x + 1, 1, 1));
        wider.primitives.push_back(probe);
    }
    wider.tree = BVHBuilder(&wider).build();
    const auto& split = static_cast<const BVHInnerNode&>(*wider.tree.root);
    EXPECT_EQ(below(split.left).size(), 4u);
    EXPECT_THAT(below(split.right), ElementsAre(wider.primitives[0]));
}

TEST_F(Bvh, OfEquallyCheapPlanesTheFirstCuts) {
    // All seven planes leave the same boxes on their sides; the first lies at 10.
    for (const float x : {0.0f, 0.0f, 0.0f, 0.0f, 80.0f}) add(x, 0, 0);
    build();
    EXPECT_EQ(below(rootSplit().left).size(), 4u);
    // What stands on the first plane belongs to its right side.
    PrimitiveContainer other;
    for (const float x : {0.0f, 0.0f, 0.0f, 10.0f, 80.0f})
        other.primitives.push_back(new Probe(Box(x, 0, 0, x, 0, 0)));
    other.tree = BVHBuilder(&other).build();
    EXPECT_EQ(below(static_cast<BVHInnerNode*>(other.tree.root)->left).size(), 3u);
}

TEST_F(Bvh, TheFarthestCentroidLandsInTheLastBucket) {
    // A cut anywhere would do, unless the farthest centroid had a bucket beyond the eight.
    for (int i = 0; i <= 8; ++i) add(10.0f * static_cast<float>(i), 0, 0, 0.5f);
    build();
    EXPECT_EQ(below(container.tree.root).size(), 9u);
    EXPECT_EQ(below(rootSplit().right).back(), container.primitives.back());
}

TEST_F(Bvh, AnInnerNodeCollectsLeftBeforeRight) {
    for (int i = 0; i < 6; ++i) add(50.0f * static_cast<float>(i), 0, 0);
    build();
    EXPECT_THAT(below(container.tree.root), ElementsAreArray(container.primitives));
}

TEST_F(Bvh, TheBuilderMakesTheTreeOfALiteralReadingOfItsRules) {
    std::mt19937 random(20);
    for (int round = 0; round < 300; ++round) {
        PrimitiveContainer some;
        const float spread = std::uniform_real_distribution<float>(1, 3000)(random);
        const float grid = round % 3 == 0 ? 25.0f : 0.001f;
        const int count =
            std::uniform_int_distribution<int>(1, round % 10 == 0 ? 2000 : 60)(random);
        std::uniform_real_distribution<float> place(-spread, spread), size(0, spread * 0.05f);
        for (int i = 0; i < count; ++i) {
            const Pos p{std::round(place(random) / grid) * grid, place(random),
                        round % 4 == 0 ? 0.0f : place(random)};
            auto* probe = new Probe(
                Box(p.x, p.y, p.z, p.x + size(random), p.y + size(random), p.z + size(random)));
            probe->enabled = random() % 8 != 0;
            some.primitives.push_back(probe);
        }
        const auto literal = LiteralBuilder(some).build();
        some.tree = BVHBuilder(&some).build();
        ASSERT_EQ(some.tree.root == nullptr, literal == nullptr);
        if (!literal) continue;
        ASSERT_NO_FATAL_FAILURE(ExpectSameTree(some.tree.root, literal.get()));
    }
}

// So far out that a plane between two places may fall on one of them.
TEST_F(Bvh, TheTreeIsTheLiteralOneAlsoWherePlanesAreRoundedAndCentroidsAreNoNumbers) {
    std::mt19937 random(21);
    for (int round = 0; round < 300; ++round) {
        PrimitiveContainer some;
        const int count = std::uniform_int_distribution<int>(5, 40)(random);
        for (int i = 0; i < count; ++i) {
            const auto place = [&] { return 1e9f + 64.0f * static_cast<float>(random() % 3); };
            const float x = random() % 10 == 0 ? std::numeric_limits<float>::quiet_NaN() : place();
            const float y = place();
            some.primitives.push_back(new Probe(Box(x, y, 0, x, y, 0)));
        }
        const auto literal = LiteralBuilder(some).build();
        some.tree = BVHBuilder(&some).build();
        ASSERT_NO_FATAL_FAILURE(ExpectSameTree(some.tree.root, literal.get())) << round;
    }
}

TEST_F(Bvh, AThousandPrimitivesAtOnePlaceMakeABalancedTree) {
    for (int i = 0; i < 1024; ++i) add(1e6f, -1e6f, 0);
    build();
    int depth = 0;
    for (const BVHNode* node = container.tree.root; node->type == BVHNode::Type::Inner; ++depth)
        node = static_cast<const BVHInnerNode*>(node)->left;
    EXPECT_EQ(depth, 8);
}

TEST_F(Bvh, CentroidsThatAreNoNumbersGoToTheFirstBucketAndLoseNobody) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    for (int i = 0; i < 40; ++i) {
        add(10.0f * static_cast<float>(i), 0, 0);
        Box broken;
        broken.set(nan, nan, nan, nan, nan, nan);
        add(broken);
        add(Box(-infinite, 0, 0, static_cast<float>(i), 1, 1));
        add(Box(-3e38f, 0, 0, -2e38f, 1, 1));
        add(Box(2e38f, 0, 0, 3e38f, 1, 1));
    }
    build();
    const Found found = below(container.tree.root);
    EXPECT_EQ(std::set(found.begin(), found.end()).size(), container.primitives.size());
}

TEST_F(Bvh, CentroidsFurtherApartThanAFloatTellsAreNotCutOffOneByOne) {
    for (int i = 0; i < 200'000; ++i)
        add(Box(i % 2 ? 3e38f : -3e38f, 0, 0, i % 2 ? 3e38f : -3e38f, 0, 0));
    build();
    EXPECT_EQ(below(container.tree.root).size(), container.primitives.size());
}

TEST_F(Bvh, PlacesThatARoundedPlaneDoesNotPartAreHalvedAndNotCutOffOneByOne) {
    for (int i = 0; i < 100'000; ++i) add(i % 2 ? 1e9f + 64 : 1e9f, 0, 0, 0);
    build();
    EXPECT_EQ(below(container.tree.root).size(), container.primitives.size());
    int depth = 0;
    for (const BVHNode* node = container.tree.root; node->type == BVHNode::Type::Inner; ++depth)
        node = static_cast<const BVHInnerNode*>(node)->right;
    EXPECT_LE(depth, 17);
}

TEST_F(Bvh, AnEmptyRangeOfNodesThrows) {
    add(0, 0, 0);
    BVHBuilder builder(&container);
    const BVHTree tree = builder.build();
    try {
        (void)builder.buildNodes(1, 1, tree.arena);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "prim num = 0");
    }
    EXPECT_THROW((void)builder.buildNodes(0, 2, tree.arena), std::out_of_range);
    EXPECT_THROW((void)builder.buildNodes(1, 0, tree.arena), std::out_of_range);
    builder.order = {7};
    EXPECT_THROW((void)builder.buildNodes(0, 1, tree.arena), std::out_of_range);
}

TEST_F(Bvh, ABucketCountsAndGrowsAndTellsIt) {
    BVHBuilder::BucketInfo bucket;
    EXPECT_EQ(bucket.count, 0u);
    EXPECT_FALSE(bucket.box.isValid());
    bucket.add(add(1, 2, 3));
    bucket.add(add(5, 2, 3));
    std::ostringstream out;
    bucket.dump(out);
    EXPECT_EQ(out.str(), "Bucket count: 2\nbox:\n0, 1, 2\n6, 3, 4\n");
}

TEST_F(Bvh, AMovedTreeLeavesAnEmptyOneAndAnAssignedOneIsSwapped) {
    add(0, 0, 0);
    BVHTree first = BVHBuilder(&container).build();
    BVHNode* root = first.root;
    BVHTree second(std::move(first));
    EXPECT_EQ(second.root, root);
    EXPECT_EQ(first.root, nullptr);
    EXPECT_EQ(first.arena, nullptr);
    BVHTree third;
    Arena* arena = third.arena;
    third = std::move(second);
    EXPECT_EQ(third.root, root);
    EXPECT_EQ(second.root, nullptr);
    EXPECT_EQ(second.arena, arena);
    BVHTree& itself = third;
    third = std::move(itself);
    EXPECT_EQ(third.root, root);
}

TEST_F(Bvh, ATreeThatTakesLessThanABlockHasItsRoomToTheByte) {
    for (int count = 1; count <= 60; ++count) {
        add(static_cast<float>(count % 7) * 20, static_cast<float>(count % 5) * 20, 0);
        const BVHTree tree = BVHBuilder(&container).build();
        const Arena::Block* block = tree.arena->firstBlock();
        if (block->next) {
            EXPECT_EQ(block->size, Arena::blockSize);
            EXPECT_GT(count, 30);
        } else {
            EXPECT_EQ(block->size, block->used);
        }
        std::vector<BVHPrimitive*> collected;
        tree.root->collectPrimitives(collected);
        EXPECT_EQ(collected.size(), static_cast<std::size_t>(count));
    }
}

// --- candidates

TEST_F(Bvh, CandidatesAreAppended) {
    Probe other(everywhere);
    Probe* probe = add(0, 0, 0);
    build();
    Found found{&other};
    container.tree.intersect(along, found);
    EXPECT_THAT(found, ElementsAre(&other, probe));
}

TEST_F(Bvh, ARayVisitsTheLeftChildFirstOnlyIfItRunsThatWay) {
    for (int i = 0; i < 8; ++i) add(100.0f * static_cast<float>(i), 0, 0);
    build();
    const Found forward = candidates(along);
    ASSERT_EQ(forward.size(), 8u);
    EXPECT_EQ(forward.front(), container.primitives.front());
    const Found backward = candidates(Ray{{2000, 0, 0}, {-1, 0, 0}});
    ASSERT_EQ(backward.size(), 8u);
    EXPECT_THAT(below(rootSplit().right), testing::Contains(backward.front()));
}

TEST_F(Bvh, ARayAlongTheSplitPlaneVisitsTheRightChildFirst) {
    // Big boxes, so that a ray across the split axis meets both sides.
    for (int i = 0; i < 8; ++i) add(20.0f * static_cast<float>(i), 0, 0, 200);
    build();
    ASSERT_EQ(rootSplit().axis, 0u);
    const Found found = candidates(Ray{{50, 0, -1000}, {0, 0, 1}});
    ASSERT_EQ(found.size(), 8u);
    EXPECT_THAT(below(rootSplit().right), testing::Contains(found.front()));
    const Found leftwards = candidates(Ray{{50, 0, -1000}, {0.01f, 0, 1}});
    EXPECT_THAT(below(rootSplit().left), testing::Contains(leftwards.front()));
}

TEST_F(Bvh, ALineIsVisitedByItsDirectionAndATriangleByItsNormal) {
    for (int i = 0; i < 8; ++i) add(20.0f * static_cast<float>(i), 0, 0, 200);
    build();
    const Found& left = below(rootSplit().left);
    const Found& right = below(rootSplit().right);
    EXPECT_THAT(left, testing::Contains(candidates(through).front()));
    EXPECT_THAT(right, testing::Contains(candidates(Line{through.end, through.start}).front()));
    const Triangle towards{{50, 0, 0}, {50, 1, 0}, {50, 0, 1}};
    EXPECT_THAT(left, testing::Contains(candidates(towards).front()));
    const Triangle away{towards.p0, towards.p2, towards.p1};
    EXPECT_THAT(right, testing::Contains(candidates(away).front()));
}

TEST_F(Bvh, ABoxVisitsTheLeftChildFirstAndAVolumeTheRightOne) {
    for (int i = 0; i < 8; ++i) add(100.0f * static_cast<float>(i), 0, 0);
    build();
    EXPECT_THAT(candidates(everywhere), ElementsAreArray(below(container.tree.root)));
    const Found found = candidates(XBelow(5000));
    ASSERT_EQ(found.size(), 8u);
    EXPECT_THAT(below(rootSplit().right), testing::Contains(found.front()));
}

TEST_F(Bvh, ADisabledPrimitiveStaysACandidateUntilTheNextBuildButOfAVolumeNoMore) {
    Probe* probe = add(0, 0, 0);
    build();
    probe->enabled = false;
    EXPECT_THAT(candidates(along), ElementsAre(probe));
    EXPECT_THAT(candidates(through), ElementsAre(probe));
    EXPECT_THAT(candidates(across), ElementsAre(probe));
    EXPECT_THAT(candidates(everywhere), ElementsAre(probe));
    EXPECT_THAT(candidates(PlaneBoundedVolume()), ElementsAre());
    build();
    EXPECT_EQ(container.tree.root, nullptr);
}

TEST_F(Bvh, ALeafPartlyInAVolumeYieldsAlsoWhatLiesOutside) {
    add(0, 0, 0);
    add(30, 0, 0);
    build();
    EXPECT_EQ(candidates(XBelow(10)).size(), 2u);
    EXPECT_EQ(candidates(XBelow(-10)).size(), 0u);
}

TEST_F(Bvh, ALeafYieldsOnlyTheBoxesThatARayMeets) {
    Probe* met = add(0, 0, 0);
    add(0, 30, 0);
    build();
    EXPECT_THAT(candidates(along), ElementsAre(met));
}

TEST_F(Bvh, AnEmptyLineThrowsWhenThereIsSomethingToMeet) {
    add(0, 0, 0);
    build();
    Found found;
    EXPECT_THROW(container.tree.intersect(Line{}, found), std::overflow_error);
}

// --- what the container answers

TEST_F(Bvh, TheNearestHitIsAnsweredAndOfEqualOnesTheFirstThatIsVisited) {
    add(0, 0, 0)->distance = 5;
    add(10, 0, 0)->distance = 3;
    add(20, 0, 0)->distance = 3;
    build();
    EXPECT_EQ(container.bvhIntersect(along).index, 1);
    EXPECT_EQ(container.bvhIntersect(through).index, 1);
    EXPECT_EQ(container.bvhIntersect(along).distance, 3.0f);
}

TEST_F(Bvh, AMissNeverReplacesAHit) {
    add(0, 0, 0)->distance = 5;
    Probe* miss = add(10, 0, 0);
    miss->hits = false;
    miss->distance = 1;
    build();
    EXPECT_EQ(container.bvhIntersect(along).index, 0);
    EXPECT_EQ(miss->questions, 1);
}

TEST_F(Bvh, ATriangleQueryEndsAtTheFirstHitWhateverItsDistance) {
    Probe* miss = add(0, 0, 0);
    miss->hits = false;
    add(10, 0, 0)->distance = 9;
    Probe* nearer = add(20, 0, 0);
    nearer->distance = 1;
    build();
    EXPECT_EQ(container.bvhIntersect(across).index, 1);
    EXPECT_EQ(miss->questions, 1);
    EXPECT_EQ(nearer->questions, 0);
}

TEST_F(Bvh, EveryPrimitiveThatARegionOverlapsIsHandedTheFunction) {
    for (int i = 0; i < 9; ++i) add(50.0f * static_cast<float>(i), 0, 0);
    build();
    std::vector<unsigned> visited;
    container.forEachIntersection(Box(90, -1, -1, 210, 1, 1),
                                  [&](unsigned number) { visited.push_back(number); });
    EXPECT_THAT(visited, ElementsAre(2, 3, 4));
}

TEST_F(Bvh, APrimitiveThatIsTakenOutIsKeptByTheTreeUntilTheNextBuild) {
    std::unique_ptr<Probe> first(add(0, 0, 0));
    Probe* second = add(10, 0, 0);
    build();
    container.removePrimitive(first.get());
    EXPECT_THAT(container.primitives, ElementsAre(second));
    EXPECT_EQ(candidates(along).size(), 2u);
    build();
    EXPECT_THAT(candidates(along), ElementsAre(second));
    EXPECT_THROW(container.removePrimitive(first.get()), std::out_of_range);
}

TEST_F(Bvh, APrimitiveThatAnswersNothingIsMissed) {
    container.primitives.push_back(new BVHPrimitive);
    container.primitives.back()->box = everywhere;
    EXPECT_TRUE(container.primitives.back()->enabled);
    build();
    EXPECT_FALSE(container.bvhIntersect(along).hit);
    EXPECT_FALSE(container.bvhIntersect(through).hit);
    EXPECT_FALSE(container.bvhIntersect(across).hit);
    container.forEachIntersection(everywhere, [](unsigned) { FAIL(); });
}

// --- against every primitive asked one by one

namespace {

template <class Query>
void ExpectAllThatPass(const PrimitiveContainer& container, const Query& query) {
    Found found;
    container.tree.intersect(query, found);
    std::set<BVHPrimitive*> expected;
    for (BVHPrimitive* primitive : container.primitives)
        if (primitive->enabled && primitive->box.intersect(query)) expected.insert(primitive);
    ASSERT_EQ(found.size(), expected.size());
    ASSERT_EQ(std::set(found.begin(), found.end()), expected);
}

void ExpectAllInside(const PrimitiveContainer& container, const PlaneBoundedVolume& volume) {
    Found found;
    container.tree.intersect(volume, found);
    const std::set<BVHPrimitive*> once(found.begin(), found.end());
    ASSERT_EQ(once.size(), found.size());
    for (BVHPrimitive* primitive : container.primitives) {
        if (!primitive->enabled) {
            ASSERT_FALSE(once.contains(primitive));
        } else if (volume.intersect(primitive->box) != PlaneBoundedVolume::Outside) {
            ASSERT_TRUE(once.contains(primitive));
        }
    }
}

}  // namespace

TEST_F(Bvh, CandidatesAreThoseThatPassWhenAskedOneByOne) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> place(-400, 400), size(0, 40), part(-1, 1);
    for (int i = 0; i < 1500; ++i) {
        const Pos p{place(random), place(random), i % 5 == 0 ? 0 : place(random)};
        add(Box(p.x, p.y, p.z, p.x + size(random), p.y + size(random),
                p.z + (i % 7 == 0 ? 0 : size(random))));
    }
    const auto point = [&] { return Pos{place(random), place(random), place(random)}; };
    for (int round = 0; round < 60; ++round) {
        // Some go, some come back, some move; the next build knows.
        for (BVHPrimitive* primitive : container.primitives) {
            if (random() % 10 == 0) primitive->enabled = !primitive->enabled;
            if (random() % 10 != 0) continue;
            const Pos p = point();
            primitive->box.set(p.x, p.y, p.z, p.x + 9, p.y + 9, p.z + 9);
        }
        build();
        for (int i = 0; i < 20; ++i) {
            Ray ray{point(), {part(random), part(random), part(random)}};
            if (i % 4 == 0) ray.direction.x = 0.0009f;
            if (i % 5 == 0) ray.direction.y = 0;
            if (i % 6 == 0) ray.maxDistance = 200;
            ASSERT_NO_FATAL_FAILURE(ExpectAllThatPass(container, ray));
            ASSERT_NO_FATAL_FAILURE(ExpectAllThatPass(container, Line{point(), point()}));
            ASSERT_NO_FATAL_FAILURE(
                ExpectAllThatPass(container, Triangle{point(), point(), point()}));
            const Pos corner = point();
            ASSERT_NO_FATAL_FAILURE(ExpectAllThatPass(
                container,
                Box(corner.x, corner.y, corner.z, corner.x + 80, corner.y + 80, corner.z + 80)));
            PlaneBoundedVolume volume;
            for (int k = 0; k < 4; ++k) {
                const Pos a = point(), b = point(), c = point();
                volume.addPlane({a.x, a.y, a.z}, {b.x, b.y, b.z}, {c.x, c.y, c.z});
            }
            ASSERT_NO_FATAL_FAILURE(ExpectAllInside(container, volume));
        }
    }
}

TEST_F(Bvh, RaysThatAreNoNumbersMeetWhatTheBoxesThemselvesSay) {
    for (int i = 0; i < 20; ++i) add(30.0f * static_cast<float>(i), 0, 0);
    build();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float broken : {nan, infinite, -infinite}) {
        ExpectAllThatPass(container, Ray{{broken, 0, 0}, {1, 1, 1}});
        ExpectAllThatPass(container, Ray{{0, 0, 0}, {broken, 1, 1}});
        ExpectAllThatPass(container, Ray{{0, 0, 0}, {1, 1, 1}, broken});
    }
}

}  // namespace vrn::selection
