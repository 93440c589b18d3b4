#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// A binary min-heap as a textbook has it, with a table of positions over all ids.
class IndexedHeap {
 public:
    explicit IndexedHeap(std::size_t ids) : position_(ids, -1), nodes_(ids) {}

    bool empty() const { return count_ == 0; }
    bool contains(int id) const { return position_[static_cast<std::size_t>(id)] >= 0; }

    void insert(int id, double value) {
        at(count_) = {value, id};
        place(id, count_);
        siftUp(count_++);
    }
    void update(int id, double value) {
        const int slot = position_[static_cast<std::size_t>(id)];
        const double old = at(slot).value;
        at(slot).value = value;
        if (old > value)
            siftUp(slot);
        else
            siftDown(slot);
    }
    std::pair<int, double> removeMin() {
        const Node top = at(0);
        --count_;
        at(0) = at(count_);
        place(at(0).id, 0);
        place(top.id, -1);
        if (count_ > 0) siftDown(0);
        return {top.id, top.value};
    }

 private:
    struct Node {
        double value;
        int id;
    };
    Node& at(int slot) { return nodes_[static_cast<std::size_t>(slot)]; }
    void place(int id, int slot) { position_[static_cast<std::size_t>(id)] = slot; }
    void swapNodes(int a, int b) {
        std::swap(at(a), at(b));
        place(at(a).id, a);
        place(at(b).id, b);
    }
    void siftUp(int slot) {
        while (slot > 0 && at((slot - 1) / 2).value > at(slot).value) {
            swapNodes(slot, (slot - 1) / 2);
            slot = (slot - 1) / 2;
        }
    }
    void siftDown(int slot) {
        while (2 * slot + 1 < count_) {
            int child = 2 * slot + 1;
            if (child + 1 < count_ && at(child).value > at(child + 1).value) ++child;
            if (!(at(slot).value > at(child).value)) break;
            swapNodes(slot, child);
            slot = child;
        }
    }

    std::vector<int> position_;
    std::vector<Node> nodes_;
    int count_ = 0;
};
