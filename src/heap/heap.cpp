#include "heap.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <utility>

#include "common/messages.h"
#include "heap/heap_checks.h"

namespace lset {

using namespace detail::messages;

Heap::Heap(int capacityWanted) : count(0), capacity(std::max(capacityWanted, 0)) {
    const auto ids = static_cast<std::size_t>(capacity);
    auto ownedNodes = std::make_unique<HeapNode[]>(ids);
    positions = new int[ids];
    nodes = ownedNodes.release();
    std::fill_n(positions, capacity, -1);
}

Heap::~Heap() {
    delete[] positions;
    delete[] nodes;
    positions = nullptr;
    nodes = nullptr;
    count = capacity = 0;
}

void Heap::removeAll() {
    std::fill_n(positions, capacity, -1);
    std::fill_n(nodes, capacity, HeapNode{0, 0.0});
    count = 0;
}

int Heap::insert(int id, double value) {
    if (id < 0 || id >= capacity) return 1;
    if (positions[id] != -1) {
        std::printf(kAlreadyInHeap);
        return 1;
    }
    nodes[count] = {id, value};
    positions[id] = count;
    ++count;
    siftup(count - 1);
    return 0;
}

int Heap::remove(double* value) {
    *value = -1.0;
    if (count < 1) return -1;
    const int id = nodes[0].id;
    *value = nodes[0].value;
    // Set before the hole is filled: the id that empties the heap fills its own hole and so stays present.
    positions[id] = -1;
    siftDown(0);
    --count;
    return id;
}

void Heap::update(int id, double value, int flag) {
    if (!exists(id)) detail::failUpdateOfAbsent(id, value);
    const int slot = positions[id];
    if (slot >= count) {
        std::printf(kUpdateBeyondCount, id, value, slot, count);
        return;
    }
    if (nodes[slot].id != id) {
        std::printf(kUpdateOfOther, nodes[slot].id, id);
        return;
    }
    const double old = nodes[slot].value;
    if (flag != 0 && old > value) return;
    nodes[slot].value = value;
    if (old > value)
        siftup(slot);
    else
        siftDown2(slot);
}

bool Heap::exists(int id) { return id >= 0 && id < capacity && positions[id] != -1; }

double Heap::get(int id) {
    assert(exists(id));
    return nodes[positions[id]].value;
}

int Heap::peek() { return count < 1 ? -1 : nodes[0].id; }

void Heap::siftup(int slot) {
    if (slot < 0 || slot >= count) return;
    for (int parent = (slot - 1) / 2; nodes[parent].value > nodes[slot].value; parent = (slot - 1) / 2) {
        std::swap(nodes[parent], nodes[slot]);
        positions[nodes[parent].id] = parent;
        positions[nodes[slot].id] = slot;
        slot = parent;
    }
}

namespace {

// Twice a slot may leave int.
bool hasChild(int slot, int count) { return slot < count / 2; }

int smallerChild(const HeapNode* node, int slot, int count) {
    const int left = 2 * slot + 1;
    const bool takeRight = left < count - 1 && node[left].value > node[left + 1].value;
    return takeRight ? left + 1 : left;
}

}  // namespace

void Heap::siftDown(int slot) {
    if (slot < 0 || slot >= count) return;
    const HeapNode moving = nodes[count - 1];
    int hole = slot;
    while (hasChild(hole, count)) {
        const int child = smallerChild(nodes, hole, count);
        if (!(moving.value > nodes[child].value)) break;
        nodes[hole] = nodes[child];
        positions[nodes[hole].id] = hole;
        hole = child;
    }
    nodes[hole] = moving;
    positions[moving.id] = hole;
}

void Heap::siftDown2(int slot) {
    if (slot < 0 || slot >= count) return;
    while (hasChild(slot, count)) {
        const int child = smallerChild(nodes, slot, count);
        if (!(nodes[slot].value > nodes[child].value)) break;
        std::swap(nodes[slot], nodes[child]);
        positions[nodes[slot].id] = slot;
        positions[nodes[child].id] = child;
        slot = child;
    }
}

void Heap::print() {
    for (int slot = 0; slot < count; ++slot) std::printf(kHeapEntry, nodes[slot].id, nodes[slot].value);
    std::putchar('\n');
}

}  // namespace lset
