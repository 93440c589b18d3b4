#include "each_input.h"

#include <algorithm>
#include <filesystem>

#include "io/format_name.h"
#include "record.h"

namespace quorbin::tool {

namespace {

/// Whether a name looks like that of a result: it is not there, and its ending is that of what is written.
bool isLikeAResult(const std::string& path) {
    if (std::filesystem::exists(path)) return false;
    const std::string ending = formatName(path, "", "");
    for (const Kind kind : {Kind::kPicture, Kind::kVolume, Kind::kMesh}) {
        const std::vector<std::string> written = listOfWritable(kind);
        if (std::find(written.begin(), written.end(), ending) != written.end()) return true;
    }
    return false;
}

}  // namespace

EachInput::EachInput(const FieldCommand& command)
    : names_(command.inputs), json_(command.json), quiet_(command.quiet) {
    if (names_.empty()) names_.emplace_back();
    batch_->hasMany = names_.size() > 1;
    const std::string& output = command.output;
    if (command.takesOutput && output.empty() && batch_->hasMany && isLikeAResult(names_.back()))
        refuse("{0}: is not there to be read; if it is what to write, put it after -o, as in -o {0}",
               names_.back());
    if (json_ && output == "-")
        refuse("--json: is printed on standard output, which -o - is for; name a file by -o");
    if (output.empty() || !(batch_->hasMany || output.back() == '/')) return;
    if (output == "-") refuse("-o -: takes the result of one input; name a folder for several");
    batch_->folder = output.substr(0, output.find_last_not_of('/') + 1);
    if (batch_->folder.empty()) batch_->folder = "/.";
    makeFolder(batch_->folder);
}

void EachInput::run(const std::string& input, FieldCommand& one, const std::function<void()>& work) {
    one.input = input;
    one.batch = batch_;
    one.record = std::make_shared<Record>(one.commandName, input);
    records_.push_back(one.record);
    if (!batch_->hasMany) {
        try {
            work();
        } catch (const Failure& failure) {
            // The result is there, with a warning.
            if (json_ && failure.status == kNotStill) finish();
            throw;
        }
        return;
    }
    one.said = std::make_shared<std::vector<std::string>>();
    const auto failure = failureOf(work);
    if (failure) {
        const Failure named = naming(input, *failure);
        failures_.add(named);
        one.record->add("error", named.what());
    }
    if (!quiet_ && !json_ && (!failure || !one.record->written().empty())) {
        std::string line = CLI::detail::join(*one.said, "; ");
        for (const auto& path : one.record->written()) line += (line.empty() ? "-> " : " -> ") + path;
        fmt::print("{}: {}\n", input, line);
    }
}

void EachInput::finish() const {
    if (json_ && !batch_->hasMany) print(records_.front()->object());
    if (json_ && batch_->hasMany) {
        Json files = Json::array();
        for (const auto& record : records_) files.push_back(record->object());
        print(Json{{"files", files}});
    }
    if (!failures_.lines.empty()) throw failures_;
}

}  // namespace quorbin::tool
