#include "suite/sdf/SdfManager.h"

#include "suite/sdf/ObjectStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace vrn::sdf;

class Thing : public SdfObject {
public:
    Thing() : SdfObject(ObjectType::Part, "thing", "thing") {}
};

TEST(SdfManager, AbsentIdIsNullOrThrowsWithTheAgreedText) {
    EXPECT_EQ(SdfManager::inst()->find(0), nullptr);
    EXPECT_EQ(SdfManager::inst()->find(4'000'000'000u), nullptr);
    EXPECT_THAT([] { (void)SdfManager::inst()->at(0); },
                testing::ThrowsMessage<std::out_of_range>("unordered_map::at"));
    EXPECT_THAT([] { (void)GetPose(0); },
                testing::ThrowsMessage<std::out_of_range>("unordered_map::at"));
}

TEST(SdfManager, ObjectIsFoundWhileItLives) {
    const std::size_t before = SdfManager::inst()->size();
    std::uint32_t id = 0;
    {
        ObjectStore store;
        Thing* thing = store.make<Thing>();
        id = thing->id;
        EXPECT_NE(id, 0u);
        EXPECT_EQ(SdfManager::inst()->find(id), thing);
        EXPECT_EQ(SdfManager::inst()->at(id), thing);
        EXPECT_EQ(SdfManager::inst()->size(), before + 1);
        thing->setPose({{1, 2, 3}, {}});
        EXPECT_EQ(GetPose(id).position, (vrn::rob::PosTemplate<double>{1, 2, 3}));
    }
    EXPECT_EQ(SdfManager::inst()->find(id), nullptr);
    EXPECT_EQ(SdfManager::inst()->size(), before);
}

TEST(SdfManager, UnfitIdsAreRefused) {
    Thing thing;
    for (const std::uint32_t id :
         {0u, SdfManager::stationLogicId, SdfManager::firstTransientId, 0xFFFF'FFFFu}) {
        thing.id = id;
        EXPECT_THROW(SdfManager::inst()->add(thing), std::invalid_argument) << id;
    }
    thing.id = SdfManager::lastModelId;
    SdfManager::inst()->add(thing);
    EXPECT_EQ(SdfManager::inst()->find(thing.id), &thing);
}

TEST(SdfManager, TakenIdIsRefusedAndStaysWithItsOwner) {
    ObjectStore store;
    Thing* first = store.make<Thing>();
    SdfManager::inst()->add(*first);  // once more does nothing
    {
        Thing second;
        second.id = first->id;
        EXPECT_THROW(SdfManager::inst()->add(second), std::invalid_argument);
    }
    EXPECT_EQ(SdfManager::inst()->find(first->id), first);  // the other's end has not removed it
    EXPECT_THROW(store.makeWithId<Thing>(first->id), std::invalid_argument);
}

TEST(SdfManager, GeneratedIdsPassOverThoseInUse) {
    SdfManager* manager = SdfManager::inst();
    const std::uint32_t next = manager->generateId() + 1;
    ObjectStore store;
    store.makeWithId<Thing>(next);
    EXPECT_EQ(manager->generateId(), next + 1);
}

TEST(SdfManager, TransientIdsNeverMeetModelIds) {
    const std::uint32_t a = SdfManager::GenerateTransientId();
    const std::uint32_t b = SdfManager::GenerateTransientId();
    EXPECT_NE(a, b);
    EXPECT_GE(a, SdfManager::firstTransientId);
    EXPECT_GE(b, SdfManager::firstTransientId);
    EXPECT_LT(SdfManager::lastModelId, SdfManager::firstTransientId);
}

TEST(SdfManager, TransientIdsOfSeveralThreadsAreAllDifferent) {
    constexpr int perThread = 2000;
    std::vector<std::vector<std::uint32_t>> ids(4);
    std::vector<std::thread> threads;
    for (auto& mine : ids)
        threads.emplace_back([&mine] {
            for (int i = 0; i < perThread; ++i) mine.push_back(SdfManager::GenerateTransientId());
        });
    for (std::thread& t : threads) t.join();
    std::set<std::uint32_t> all;
    for (const auto& mine : ids) all.insert(mine.begin(), mine.end());
    EXPECT_EQ(all.size(), ids.size() * perThread);
    EXPECT_FALSE(all.contains(0));
}

TEST(SdfManager, ObjectsComeAndGoWhileOthersLook) {
    std::atomic<bool> stop{false};
    std::atomic<long> found{0};
    ObjectStore steadyStore;
    const Thing* steady = steadyStore.make<Thing>();
    std::vector<std::thread> readers;
    for (int t = 0; t < 2; ++t)
        readers.emplace_back([&] {
            while (!stop)
                if (SdfManager::inst()->at(steady->id) == steady) ++found;
        });
    std::vector<std::thread> writers;
    for (int t = 0; t < 2; ++t)
        writers.emplace_back([] {
            for (int i = 0; i < 500; ++i) {
                ObjectStore store;
                for (int j = 0; j < 4; ++j) store.make<Thing>();
            }
        });
    for (std::thread& t : writers) t.join();
    while (found == 0) std::this_thread::yield();
    stop = true;
    for (std::thread& t : readers) t.join();
    EXPECT_EQ(SdfManager::inst()->find(steady->id), steady);
}

}  // namespace
