#pragma once

#include "quorbin_export.h"

namespace lset {

/// An entry of Heap.
struct HeapNode {
    int id;
    double value;
};

/// Indexed binary min-heap of (id, value) with ids from 0 to capacity − 1, each in the heap at most once.
/// Only values are compared, by strict tests, so the order in which equal values leave follows from the
/// sifting rules. Takes 20 bytes for each id of the capacity. Ids outside the capacity are never inserted and
/// never present.
class QUORBIN_EXPORT Heap {
 public:
    /// A negative capacity counts as 0.
    Heap(int capacity);
    ~Heap();
    Heap(const Heap&) = delete;
    void operator=(const Heap&) = delete;

    /// Empties the heap, and forgets what remove left behind (see there).
    void removeAll();

    /// Returns 0 after inserting. Returns 1, with a line on standard output, if the id is already present;
    /// and 1 without a line if it is outside the capacity. O(log n).
    int insert(int id, double value);

    /// Takes out the entry with the smallest value: returns its id and stores its value. On an empty heap
    /// returns −1 and stores −1.0. The id that empties the heap still counts as present until removeAll.
    /// O(log n).
    int remove(double* value);

    /// Changes the value of a present id; a flag other than 0 forbids a decrease. An id that is not present
    /// ends the process with a message and status 0. O(log n).
    void update(int id, double value, int flag);

    bool exists(int id);
    /// The value of a present id, unchecked.
    double get(int id);
    /// The id with the smallest value (the id, not the value), or −1.
    int peek();

    // The sifting rules; a slot that holds no node is left alone.

    /// Moves the node at a slot up while its parent's value is greater.
    void siftup(int slot);
    /// Fills the hole at a slot with the last node, moving it down; count stays.
    void siftDown(int slot);
    /// Moves the node at a slot down while a child's value is smaller; of equal children the left one is
    /// taken.
    void siftDown2(int slot);

    /// Ends the process with messages and status 0 if a child's value is smaller than its parent's.
    void checkHeapProperty(char* description);
    void checkHeapProperty(const char* description);
    /// Ends the process with messages and status 0 if the position table is wrong. All heaps remember
    /// together the description of the last check that passed. In both, the description is printed as a
    /// format without arguments: %% prints %, anything else stands as it is.
    void check(char* description);
    void check(const char* description);
    /// Prints "(id,value)," for every slot on one line.
    void print();

    int* positions;   ///< by id: the slot that holds it, −1 for none; owned
    HeapNode* nodes;  ///< by slot: a node's children are at 2 · slot + 1 and the next; owned
    int count;
    int capacity;
};

}  // namespace lset
