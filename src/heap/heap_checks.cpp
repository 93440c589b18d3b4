#include "heap/heap_checks.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/messages.h"
#include "heap.h"

namespace lset {

using namespace detail::messages;

namespace detail {

void failUpdateOfAbsent(int id, double value) {
    std::printf(kUpdateOfAbsent, id, value);
    std::exit(0);
}

}  // namespace detail

namespace {

/// The description as a format without arguments. It never reaches printf, where a stray conversion would
/// read arguments that are not there.
std::string expand(const char* description) {
    std::string text;
    for (const char* c = description; *c != '\0'; ++c) {
        if (c[0] == '%' && c[1] == '%') ++c;
        text += *c;
    }
    return text;
}

}  // namespace

void Heap::checkHeapProperty(char* description) { checkHeapProperty(static_cast<const char*>(description)); }

void Heap::checkHeapProperty(const char* description) {
    const HeapNode* const node = nodes;
    int faults = 0;
    const auto report = [&](int shownSlot, int child, int slot) {
        std::printf(kHeapOrderRule);
        std::printf(kHeapOrderBroken, shownSlot, node[child].value, slot, node[slot].value);
        ++faults;
    };
    for (int slot = 0; slot < count / 2; ++slot) {
        const int left = 2 * slot + 1;
        if (node[slot].value > node[left].value) report(left, left, slot);
        // The report of a right child names the left one's slot, as it always has.
        if (left < count - 1 && node[slot].value > node[left + 1].value) report(left, left + 1, slot);
    }
    if (faults > 0) {
        std::fputs(expand(description).c_str(), stdout);
        std::exit(0);
    }
}

void Heap::check(char* description) { check(static_cast<const char*>(description)); }

void Heap::check(const char* description) {
    static char lasts[1024];
    const HeapNode* const node = nodes;
    int faults = 0;
    for (int slot = 0; slot < count; ++slot) {
        const int id = node[slot].id;
        const int position = id >= 0 && id < capacity ? positions[id] : -1;
        if (position != slot) {
            std::fputs(expand(description).c_str(), stdout);
            std::printf(kPositionWrong, slot, id, position, slot);
            ++faults;
        }
    }
    if (faults > 0) {
        std::printf(kHappenedAt, description);
        std::printf(kLastGoodCheck, lasts);
        std::exit(0);
    }
    std::snprintf(lasts, sizeof lasts, "%s", expand(description).c_str());
}

}  // namespace lset
