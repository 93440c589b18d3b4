#pragma once

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "io/image.h"

namespace quorbin::tool {

using Json = nlohmann::ordered_json;

/// What --json prints of one input: what was read, results, files that were written, and the seconds that it
/// took.
class Record {
 public:
    Record(const std::string& command, const std::string& file);

    /// What was read, with its spacings along x, y and z.
    void addImage(const io::Image& image, const std::array<double, 3>& spacing);
    template <class Value>
    void add(const std::string& key, Value&& value) {
        object_[key] = std::forward<Value>(value);
    }
    void addWritten(const std::string& path) { written_.push_back(path); }
    const std::vector<std::string>& written() const { return written_; }

    /// The part that is of a label.
    std::shared_ptr<Record> ofLabel(double label);

    /// All of it.
    Json object() const;

 private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    Json object_;
    std::vector<std::string> written_;
    std::vector<std::shared_ptr<Record>> labels_;
};

/// On standard output.
void print(const Json& object);

}  // namespace quorbin::tool
