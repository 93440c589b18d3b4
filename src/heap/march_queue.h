#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lset::detail {

/// The queue of a march: a binary min-heap by the sifting rules of lset::Heap, so that entries, equal ones
/// too, leave in the same order. Where that one finds an entry by a table over all ids, here an entry is
/// known by a handle, a small number used again once the entry has left: the tables are as large as the queue
/// has been.
class MarchQueue {
 public:
    using Handle = int;

    /// Forgets what an interrupted march has left.
    void clear() {
        values_.clear();
        entries_.clear();
        slots_.clear();
        free_.clear();
    }

    bool empty() const { return values_.empty(); }
    std::size_t size() const { return values_.size(); }
    int id(std::size_t slot) const { return idOf(entries_[slot]); }
    double value(std::size_t slot) const { return values_[slot]; }
    double valueOf(Handle handle) const { return values_[slotOf(handle)]; }

    Handle insert(int id, double value) {
        Handle handle;
        if (free_.empty()) {
            handle = static_cast<Handle>(slots_.size());
            slots_.push_back(0);
        } else {
            handle = free_.back();
            free_.pop_back();
        }
        values_.push_back(value);
        entries_.push_back(entryOf(id, handle));
        siftUp(values_.size() - 1, value, entries_.back());
        return handle;
    }

    void removeTop() {
        free_.push_back(handleOf(entries_.front()));
        fillRoot();
        values_.pop_back();
        entries_.pop_back();
    }

    /// Replaces the value, whether it grows or shrinks.
    void update(Handle handle, double value) {
        const std::size_t slot = slotOf(handle);
        const Entry entry = entries_[slot];
        if (values_[slot] > value)
            siftUp(slot, value, entry);
        else
            siftDown(slot, value, entry);
    }

 private:
    /// Id and handle in one word: written as two, it could not be read back at once while the writes are
    /// under way.
    using Entry = std::uint64_t;
    static Entry entryOf(int id, Handle handle) {
        return static_cast<std::uint32_t>(id) | Entry{static_cast<std::uint32_t>(handle)} << 32;
    }
    static int idOf(Entry entry) { return static_cast<int>(entry & 0xffffffffU); }
    static Handle handleOf(Entry entry) { return static_cast<Handle>(entry >> 32); }

    std::size_t slotOf(Handle handle) const {
        return static_cast<std::size_t>(slots_[static_cast<std::size_t>(handle)]);
    }

    void place(std::size_t slot, double value, Entry entry) {
        values_[slot] = value;
        entries_[slot] = entry;
        slots_[static_cast<std::size_t>(handleOf(entry))] = static_cast<int>(slot);
    }
    void move(std::size_t from, std::size_t to) { place(to, values_[from], entries_[from]); }

    void siftUp(std::size_t slot, double value, Entry entry) {
        while (slot > 0) {
            const std::size_t parent = (slot - 1) / 2;
            if (!(values_[parent] > value)) break;
            move(parent, slot);
            slot = parent;
        }
        place(slot, value, entry);
    }

    /// 1 when the left one of two siblings is greater: of equal children the left one is taken.
    std::size_t rightIsSmaller(std::size_t left) const { return values_[left] > values_[left + 1] ? 1 : 0; }

    std::size_t smallerChild(std::size_t slot) const {
        const std::size_t left = 2 * slot + 1;
        return left + 1 < values_.size() ? left + rightIsSmaller(left) : left;
    }

    void siftDown(std::size_t slot, double value, Entry entry) {
        while (2 * slot + 1 < values_.size()) {
            const std::size_t child = smallerChild(slot);
            if (!(value > values_[child])) break;
            move(child, slot);
            slot = child;
        }
        place(slot, value, entry);
    }

    /// Moves the last entry to where it belongs on the way down from the root. It nearly always belongs near
    /// the bottom, so the hole goes there first and the entry climbs back; since values do not fall along the
    /// way down, that is where a descent from the top would stop too.
    void fillRoot() {
        const std::size_t count = values_.size();
        const double value = values_.back();
        const Entry entry = entries_.back();
        std::size_t hole = 0;
        // Two levels at a time: which grandchild is the smaller is settled while the children are compared.
        while (4 * hole + 6 < count) {
            const std::size_t left = 2 * hole + 1, grand = 4 * hole + 3;
            const std::size_t right = rightIsSmaller(left);
            const std::size_t underLeft = rightIsSmaller(grand), underRight = rightIsSmaller(grand + 2);
            const std::size_t child = left + right;
            const std::size_t grandchild =
                grand + 2 * right + (underLeft ^ ((underLeft ^ underRight) & (0 - right)));
            move(child, hole);
            move(grandchild, child);
            hole = grandchild;
        }
        while (2 * hole + 1 < count) {
            const std::size_t child = smallerChild(hole);
            move(child, hole);
            hole = child;
        }
        while (hole > 0) {
            const std::size_t parent = (hole - 1) / 2;
            if (!(values_[parent] >= value)) break;
            move(parent, hole);
            hole = parent;
        }
        place(hole, value, entry);
    }

    // By slot, side by side: comparing touches values only.
    std::vector<double> values_;
    std::vector<Entry> entries_;
    std::vector<int> slots_;  // by handle
    std::vector<Handle> free_;
};

}  // namespace lset::detail
