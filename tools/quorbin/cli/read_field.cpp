#include <algorithm>
#include <array>
#include <type_traits>

#include "field_command.h"
#include "progress.h"
#include "record.h"

namespace quorbin::tool {

namespace {

/// What would help where a field has no outline.
std::string wayToACrossing(const Samples& samples, bool isField, const FieldOptions& options) {
    const auto [low, high, mean] = statisticsOf(samples);
    if (low == high) return fmt::format("every value is {}, so choose another input", low);
    if (isField && !options.level && !options.between)
        return fmt::format(
            "its values, {} to {}, are taken as a field, inside where ≤ 0; if it is a picture, bright "
            "inside, add "
            "--inside above --level {:.4g}",
            low, high, otsuLevel(samples));
    return fmt::format("its values are {} to {}, so choose another --{}", low, high,
                       options.between ? "between" : "level");
}

[[noreturn]] void refuseWithoutCrossing(const char* what, bool isInside, const Samples& samples, bool isField,
                                        const FieldOptions& options) {
    throw Failure(kNoCrossing,
                  fmt::format("has no {}, all of it is {}; {}", what, isInside ? "inside" : "outside",
                              wayToACrossing(samples, isField, options)));
}

/// For a picture and a volume alike.
template <class Grid>
io::Image readInput(const FieldCommand& command, Grid& levelSet, std::string& note, bool needsCrossing) {
    constexpr bool kIsVolume = std::is_same_v<Grid, FullLevelSet3D>;
    io::Image image = command.image();
    if (!kIsVolume && image.isVolume)
        refuse("{}: is a volume; quorbin slice takes a plane of it", command.input);
    command.file().forget();
    std::optional<double> level;
    try {
        level = makeField(image, command.field, levelSet, note);
        if (needsCrossing && !hasCrossing(levelSet))
            refuseWithoutCrossing(kIsVolume ? "surface" : "outline", levelSet.data()[0] <= 0,
                                  samplesOf(image.samples), image.isField, command.field);
    } catch (const Failure& failure) {
        throw naming(command.input, failure);
    }
    std::array<double, 3> spacing = {levelSet.getXSpace(), levelSet.getYSpace(), 1};
    if constexpr (kIsVolume) spacing[2] = levelSet.getZSpace();
    command.recordReading(image, spacing, level, note);
    if (!command.needsSamples) std::vector<double>().swap(image.samples);
    return image;
}

ReadOptions told(ReadOptions reading, Progress& progress) {
    reading.progress = progress.function();
    return reading;
}

template <class Grid>
auto readAndReport(const FieldCommand& command, Grid& levelSet, bool needsCrossing) {
    std::string note;
    auto image = readInput(command, levelSet, note, needsCrossing);
    command.reportNotes(image);
    if (!note.empty()) command.report("{}: {}", command.input, note);
    return image;
}

}  // namespace

void FieldCommand::recordReading(const io::Image& image, const std::array<double, 3>& spacing,
                                 const std::optional<double>& level, const std::string& note) const {
    record->addImage(image, spacing);
    if (level) record->add("level", *level);
    if (!note.empty()) record->add("note", note);
}

void FieldCommand::reportNotes(const io::Image& image) const {
    for (const std::string& note : image.notes) report("{}: {}", input, note);
}

io::PackedPicture FieldCommand::packedPicture() const {
    if (kept_) return packed(*kept_);
    Progress progress(!quiet);
    return readPacked(file(), told(reading, progress));
}

io::Image FieldCommand::image() const {
    if (kept_) return *kept_;
    Progress progress(!quiet);
    return raw ? readRaw(file(), *raw, reading) : readImage(file(), told(reading, progress));
}

io::Image FieldCommand::read(FullLevelSet2D& levelSet) const { return readAndReport(*this, levelSet, false); }
io::Image FieldCommand::read(FullLevelSet3D& levelSet) const { return readAndReport(*this, levelSet, false); }

io::Image FieldCommand::read(FullLevelSet2D& levelSet, std::string& note) const {
    return readInput(*this, levelSet, note, false);
}
io::Image FieldCommand::read(FullLevelSet3D& levelSet, std::string& note) const {
    return readInput(*this, levelSet, note, false);
}

FieldRows FieldCommand::readRows(io::PackedPicture& picture, std::string& note, bool needsCrossing) const {
    picture = packedPicture();
    file().forget();
    try {
        FieldRows rows;
        const std::optional<double> level = makeField(picture, field, rows, note);
        if (needsCrossing && !hasCrossing(rows)) {
            std::vector<double> row(static_cast<std::size_t>(rows.width));
            rows.read(0, row.data());
            refuseWithoutCrossing("outline", row[0] <= 0, samplesOf(picture.rows), picture.image.isField,
                                  field);
        }
        recordReading(picture.image, {rows.xSpace, rows.ySpace, 1}, level, note);
        return rows;
    } catch (const Failure& failure) {
        throw naming(input, failure);
    }
}

io::Image FieldCommand::readWithCrossing(FullLevelSet2D& levelSet) const {
    return readAndReport(*this, levelSet, true);
}
io::Image FieldCommand::readWithCrossing(FullLevelSet3D& levelSet) const {
    return readAndReport(*this, levelSet, true);
}

template <class Grid>
void FieldCommand::readOther(const std::string& path, Grid& levelSet) const {
    FieldCommand other = *this;
    other.input = path;
    other.file_ = nullptr;
    other.record = std::make_shared<Record>(commandName, path);
    if (other.isGivenVolume() != std::is_same_v<Grid, FullLevelSet3D>)
        refuse("{}: is a {}, and {} is none; give two of a kind", path,
               std::is_same_v<Grid, FullLevelSet3D> ? "picture" : "volume", input);
    other.read(levelSet);
}
template void FieldCommand::readOther(const std::string&, FullLevelSet2D&) const;
template void FieldCommand::readOther(const std::string&, FullLevelSet3D&) const;

template <class Grid>
void FieldCommand::smoothIfMask(Grid& levelSet) const {
    if (asPixels || !isMask(levelSet)) return;
    Progress progress(!quiet);
    smoothMask(levelSet, {true, progress.function()});
    record->add("smoothed", true);
    report("{}: the outline is smoothed between the samples of the mask", input);
}
template void FieldCommand::smoothIfMask(FullLevelSet2D&) const;
template void FieldCommand::smoothIfMask(FullLevelSet3D&) const;

}  // namespace quorbin::tool
