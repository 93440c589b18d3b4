#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "quorbin2d/contour.h"
#include "quorbin2d/contour_hash.h"

void getUniquePoints(std::vector<brin::Vec2<double>>& points, std::vector<std::pair<int, int>>& segments) {
    // The unique points of one hash form a list, oldest first, since the oldest of several matches is taken.
    struct List {
        int first, last;
    };
    std::unordered_map<std::uint32_t, List> listOfHash;
    std::vector<int> nextInList;
    std::vector<brin::Vec2<double>> unique;
    std::vector<int> remap;
    remap.reserve(points.size());

    const vec2d_hash hash;
    for (const brin::Vec2<double>& p : points) {
        const int fresh = static_cast<int>(unique.size());
        const auto [entry, isNew] = listOfHash.try_emplace(hash(p), List{fresh, fresh});
        int match = isNew ? -1 : entry->second.first;
        while (match >= 0 && !hash(unique[static_cast<std::size_t>(match)], p))
            match = nextInList[static_cast<std::size_t>(match)];
        if (match < 0) {
            if (!isNew) nextInList[static_cast<std::size_t>(entry->second.last)] = fresh;
            entry->second.last = fresh;
            unique.push_back(p);
            nextInList.push_back(-1);
            match = fresh;
        }
        remap.push_back(match);
    }
    points = unique;

    const auto renumber = [&](int& index) {
        if (index >= 0 && static_cast<std::size_t>(index) < remap.size())
            index = remap[static_cast<std::size_t>(index)];
    };
    for (auto& segment : segments) {
        renumber(segment.first);
        renumber(segment.second);
    }
}
