#include "heap/march_queue.h"

#include <heap.h>

#include <map>
#include <random>

#include <gtest/gtest.h>

using lset::Heap;
using lset::detail::MarchQueue;

namespace {

// Few distinct values, so that most comparisons are ties.
TEST(MarchQueue, KeepsTheOrderOfTheIndexedHeapUnderRandomOperations) {
    std::mt19937 random(3);
    for (int distinct : {3, 40, 100000}) {
        constexpr int kIds = 400;
        Heap heap(kIds + 1);
        heap.insert(kIds, 1e9);  // keeps it from running empty, where the removed id would stay present
        MarchQueue queue;
        queue.insert(kIds, 1e9);
        std::map<int, MarchQueue::Handle> handles;
        std::uniform_int_distribution<int> anyValue(0, distinct), anyId(0, kIds - 1), percent(0, 99);
        for (int step = 0; step < 60000; ++step) {
            const int id = anyId(random);
            const double value = anyValue(random);
            const auto known = handles.find(id);
            if (percent(random) < 30 && heap.count > 1) {
                double smallest = 0;
                const int top = queue.id(0);
                EXPECT_EQ(queue.value(0), heap.nodes[0].value);
                queue.removeTop();
                ASSERT_EQ(heap.remove(&smallest), top);
                handles.erase(top);
            } else if (known == handles.end()) {
                heap.insert(id, value);
                handles[id] = queue.insert(id, value);
            } else {
                heap.update(id, value, 0);
                queue.update(known->second, value);
                ASSERT_EQ(queue.valueOf(known->second), value);
            }
            ASSERT_EQ(static_cast<int>(queue.size()), heap.count);
        }
        for (int slot = 0; slot < heap.count; ++slot)
            ASSERT_EQ(queue.id(static_cast<std::size_t>(slot)), heap.nodes[slot].id);
    }
}

}  // namespace
