#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace lset::detail {

/// Asks for large pages under a large array that has not been touched yet: marches and extractions reach over
/// it in all directions, and a table of small pages would not stay in cache. Only advice; it cannot fail.
inline void adviseHugePages([[maybe_unused]] void* array, [[maybe_unused]] std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr std::uintptr_t kHugePage = std::uintptr_t{1} << 21;
    const auto begin = (reinterpret_cast<std::uintptr_t>(array) + kHugePage - 1) & ~(kHugePage - 1);
    const auto end = (reinterpret_cast<std::uintptr_t>(array) + bytes) & ~(kHugePage - 1);
    if (begin < end) {
        auto* const first = static_cast<char*>(array) + (begin - reinterpret_cast<std::uintptr_t>(array));
        madvise(first, end - begin, MADV_HUGEPAGE);
    }
#endif
}

/// Makes room in a vector for so many items in all, at once and with large pages.
template <class T>
void makeRoomFor(std::size_t count, std::vector<T>& items) {
    if (count <= items.capacity()) return;
    items.reserve(count);
    adviseHugePages(items.data() + items.size(), (items.capacity() - items.size()) * sizeof(T));
}

}  // namespace lset::detail
