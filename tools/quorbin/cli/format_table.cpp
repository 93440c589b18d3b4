#include "format_table.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <vector>

#include <fmt/core.h>

#include "io/format.h"

namespace quorbin::tool {

namespace {

using Row = std::array<std::string, 4>;

std::string listed(const std::vector<std::pair<bool, const char*>>& parts) {
    std::string text;
    for (const auto& [isThere, name] : parts)
        if (isThere) text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

std::vector<Row> rowsOfFormats() {
    std::vector<Row> rows;
    for (const io::Format& format : io::formats()) {
        const bool isEither = format.holds == io::Holds::kEither;
        std::istringstream endings(format.endings);
        std::string names, ending;
        while (endings >> ending) names += (names.empty() ? "." : ", .") + ending;
        rows.push_back({format.name, names,
                        listed({{isEither || format.holds == io::Holds::kPictures, "pictures"},
                                {isEither || format.holds == io::Holds::kVolumes, "volumes"}}),
                        listed({{format.writePicture != nullptr, "pictures"},
                                {format.writesMasks, "masks"},
                                {format.writeVolume != nullptr, "volumes"},
                                {format.writeMesh != nullptr, "meshes"}})});
    }
    return rows;
}

const Row kHead = {"format", "endings", "reads", "writes"};

}  // namespace

std::string textOfFormats() {
    std::vector<Row> rows = rowsOfFormats();
    rows.insert(rows.begin(), kHead);
    std::array<std::size_t, 4> widths{};
    for (const Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    std::string text;
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) line += fmt::format("{:<{}}", row[i], widths[i] + 2);
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

std::string markdownOfFormats() {
    const auto lineOf = [](const Row& row) {
        return fmt::format("| {} | {} | {} | {} |\n", row[0], row[1], row[2], row[3]);
    };
    std::string text = lineOf(kHead) + "|---|---|---|---|\n";
    for (const Row& row : rowsOfFormats()) text += lineOf(row);
    return text;
}

}  // namespace quorbin::tool
