#include "record.h"

#include <fmt/core.h>

namespace quorbin::tool {

Record::Record(const std::string& command, const std::string& file)
    : object_{{"command", command}, {"file", file}} {}

void Record::addImage(const io::Image& image, const std::array<double, 3>& spacing) {
    object_.update({{"format", image.format},
                    {"kind", image.isField    ? "field"
                             : image.isVolume ? "volume"
                                              : "picture"},
                    {"width", image.width},
                    {"height", image.height}});
    if (image.isVolume) object_["depth"] = image.depth;
    object_["spacing"] = Json(spacing);
    if (!image.isVolume) object_["spacing"].erase(2);
    if (image.isVolume)
        object_["affine"] = image.placement.affine ? Json(*image.placement.affine) : Json(nullptr);
}

std::shared_ptr<Record> Record::ofLabel(double label) {
    labels_.push_back(std::make_shared<Record>(object_["command"], object_["file"]));
    labels_.back()->add("label", label);
    return labels_.back();
}

Json Record::object() const {
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start_;
    Json object = object_;
    for (const auto& label : labels_) object["labels"].push_back(label->object());
    object["written"] = written_;
    object["seconds"] = taken.count();
    return object;
}

void print(const Json& object) {
    // A file's name need not be text.
    fmt::print("{}\n", object.dump(2, ' ', false, Json::error_handler_t::replace));
}

}  // namespace quorbin::tool
