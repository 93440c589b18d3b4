#pragma once

#include "quorbin_export.h"

namespace lset {

/// An entry of a Heap.
struct HeapNode {
    int id;
    double value;
};

/// Indexed binary min-heap of (id, value). Ids are numbers from 0 to capacity − 1, each in the heap at most
/// once; an id outside this range is never inserted and never present. Only values are compared, always by
/// the operator >, so the order in which equal values leave follows from the sifting rules. Takes 20 bytes
/// for each id of the capacity.
class QUORBIN_EXPORT Heap {
 public:
    /// An empty heap. A negative capacity counts as 0. Throws std::bad_alloc.
    Heap(int capacity);

    ~Heap();
    Heap(const Heap&) = delete;
    void operator=(const Heap&) = delete;

    /// Empties the heap. An id that remove has left as present (see there) is absent again. O(capacity).
    void removeAll();

    /// Inserts an id with its value and returns 0. Inserts nothing and returns 1 if the id is outside the
    /// capacity, or if it is already present; in the second case prints a line to standard output. O(log n).
    int insert(int id, double value);

    /// Removes the entry with the smallest value, returns its id and stores its value in *value. On an empty
    /// heap returns −1 and stores −1.0. The id whose removal leaves the heap empty still counts as present
    /// until removeAll. O(log n).
    int remove(double* value);

    /// Changes the value of a present id. If flag is not 0, a value below the present one is ignored. An id
    /// that is not present ends the process with a message on standard output and exit status 0. O(log n).
    void update(int id, double value, int flag);

    /// Whether an id is present.
    bool exists(int id);
    /// The value of an id, which must be present; this is not checked.
    double get(int id);
    /// The id (not the value) of the entry with the smallest value, or −1 if the heap is empty.
    int peek();

    // The sifting rules. They do nothing at a slot that holds no node.

    /// Moves the node at a slot up while its parent's value is greater.
    void siftup(int slot);
    /// Replaces the node at a slot by the last node, which it moves down as siftDown2 does; count stays.
    void siftDown(int slot);
    /// Moves the node at a slot down while a child's value is smaller; of equal children the left one is
    /// taken.
    void siftDown2(int slot);

    /// If a child's value is smaller than its parent's, prints the fault and the description to standard
    /// output and ends the process with exit status 0.
    void checkHeapProperty(char* description);
    void checkHeapProperty(const char* description);
    /// Does the same if a node's entry in positions is wrong, and also prints the description of the last
    /// check that passed on any heap. Both functions print %% in a description as %, except after "happened
    /// at:", and anything else as it is.
    void check(char* description);
    void check(const char* description);
    /// Prints "(id,value)," for every slot on one line of standard output, values without decimals.
    void print();

    int* positions;   ///< by id: the slot that holds it, or −1; owned
    HeapNode* nodes;  ///< by slot: the children of slot s are in slots 2 s + 1 and 2 s + 2; owned
    int count;        ///< nodes in the heap
    int capacity;     ///< ids are smaller than this
};

}  // namespace lset
