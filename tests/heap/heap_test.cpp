#include <heap.h>

#include <unistd.h>

#include <gtest/gtest.h>

using lset::Heap;
using testing::ExitedWithCode;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

namespace {

/// What a fatal path prints to standard output, where a death test listens.
void toStandardError() { dup2(STDERR_FILENO, STDOUT_FILENO); }

TEST(Heap, GivesBackEntriesBySizeOfValue) {
    Heap heap(20);
    double value = 0;
    EXPECT_EQ(heap.peek(), -1);
    EXPECT_EQ(heap.remove(&value), -1);
    EXPECT_EQ(value, -1.0);
    heap.insert(10, 3.0);
    heap.insert(11, 1.0);
    heap.insert(12, 2.0);
    EXPECT_EQ(heap.peek(), 11);
    EXPECT_EQ(heap.get(12), 2.0);
    for (auto [id, expected] : {std::pair{11, 1.0}, {12, 2.0}, {10, 3.0}, {-1, -1.0}}) {
        EXPECT_EQ(heap.remove(&value), id);
        EXPECT_EQ(value, expected);
    }
}

TEST(Heap, TheIdThatEmptiesItStaysPresentUntilRemoveAll) {
    Heap heap(4);
    double value = 0;
    heap.insert(3, 1.0);
    heap.remove(&value);
    EXPECT_TRUE(heap.exists(3));
    CaptureStdout();
    EXPECT_EQ(heap.insert(3, 2.0), 1);
    EXPECT_EQ(GetCapturedStdout(), "its already in heap\n");
    heap.removeAll();
    EXPECT_FALSE(heap.exists(3));
    EXPECT_EQ(heap.insert(3, 2.0), 0);
}

TEST(Heap, EqualValuesDoNotSwapAndTheLeftOfEqualChildrenRises) {
    Heap heap(3);
    double value = 0;
    for (int id : {2, 0, 1}) heap.insert(id, 1.0);
    EXPECT_EQ(heap.nodes[0].id, 2);
    heap.update(1, 1.0, 0);
    EXPECT_EQ(heap.nodes[2].id, 1);
    // The last node, 1, fills the hole at the root and stays there, since no child is smaller.
    EXPECT_EQ(heap.remove(&value), 2);
    EXPECT_EQ(heap.nodes[0].id, 1);

    Heap rising(4);
    for (auto [id, v] : {std::pair{0, 1.0}, {1, 2.0}, {2, 2.0}, {3, 9.0}}) rising.insert(id, v);
    rising.remove(&value);
    EXPECT_EQ(rising.nodes[0].id, 1);
}

TEST(Heap, UpdateMovesBothWaysAndAFlagForbidsADecrease) {
    Heap heap(8);
    for (int id = 0; id < 7; ++id) heap.insert(id, id);
    heap.update(6, -1.0, 1);
    EXPECT_EQ(heap.get(6), 6.0);
    heap.update(6, -1.0, 0);
    EXPECT_EQ(heap.peek(), 6);
    heap.update(6, 10.0, 1);
    EXPECT_EQ(heap.peek(), 0);
    heap.checkHeapProperty("after updates");
    heap.check("after updates");
}

TEST(Heap, ShowsItsArraysAsPlainPointers) {
    Heap heap = 4;
    heap.insert(2, 1.0);
    int* p = heap.positions;
    lset::HeapNode* n = heap.nodes;
    EXPECT_EQ(p[2], 0);
    EXPECT_EQ(n[0].id, 2);
    char description[] = "written to";
    heap.check(description);
    heap.checkHeapProperty(description);
}

TEST(Heap, PrintsItsSlots) {
    Heap heap(8);
    heap.insert(5, 2.4);
    heap.insert(7, 3.6);
    CaptureStdout();
    heap.print();
    EXPECT_EQ(GetCapturedStdout(), "(5, 2),(7, 4),\n");
}

TEST(Heap, ReportsUpdatesThatDoNotFit) {
    Heap heap(4);
    heap.insert(0, 1.5);
    heap.insert(1, 2.5);
    heap.positions[1] = 2;
    CaptureStdout();
    heap.update(1, 3.0, 0);
    heap.positions[1] = 0;
    heap.update(1, 3.0, 0);
    EXPECT_EQ(GetCapturedStdout(), "problem in update, node=(1,3.000000), 2>=2\nerror in update 0!=1");
    EXPECT_EXIT((toStandardError(), heap.update(3, 0.5, 0)), ExitedWithCode(0),
                "problem in update, -1 index for 3,0.500000");
}

TEST(Heap, ChecksNameTheFaultAndTheLastGoodCheck) {
    Heap heap(4);
    for (int id = 0; id < 3; ++id) heap.insert(id, id);
    EXPECT_EXIT(
        {
            toStandardError();
            heap.nodes[2].value = -5.0;  // a right child: the report names the left one's slot
            heap.checkHeapProperty("100%% of %d");
        },
        ExitedWithCode(0),
        "-----------------------\nheap property is not valid \\(1,-5.000000\\) < \\(0,0.000000\\)\n100% of "
        "%d");
    EXPECT_EXIT(
        {
            toStandardError();
            heap.check("good");
            heap.positions[1] = 2;
            heap.check("bad");
        },
        ExitedWithCode(0), "bad\\[1\\]=1 thinks its at 2 not 1\nhappened at: bad\nprevopis:good\n");
}

TEST(Heap, NeverTouchesWhatLiesOutsideItsCapacity) {
    Heap heap(2);
    EXPECT_EQ(heap.insert(2, 1.0), 1);
    EXPECT_EQ(heap.insert(-1, 1.0), 1);
    EXPECT_FALSE(heap.exists(5));
    EXPECT_EQ(heap.count, 0);
    heap.siftDown(0);
    heap.siftup(-1);
    heap.siftDown2(7);
    EXPECT_EQ(Heap(-3).capacity, 0);
}

}  // namespace
