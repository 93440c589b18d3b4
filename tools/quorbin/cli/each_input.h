#pragma once

#include <chrono>
#include <functional>

#include "failure.h"
#include "field_command.h"

namespace quorbin::tool {

/// The inputs of a command, one after the other. The results of several, or of one where the output ends in
/// a slash, go into a folder under the names of their inputs. Each of several gets a line; what fails is told
/// at the end, as Failures.
class EachInput {
 public:
    explicit EachInput(const FieldCommand& command);

    /// Makes one, a copy of the command, that of an input, and runs it.
    void run(const std::string& input, FieldCommand& one, const std::function<void()>& work);

    /// Prints the JSON object, and throws where an input has failed.
    void finish() const;

    /// The inputs, or a nameless one where none is given.
    const std::vector<std::string>& names() const { return names_; }

 private:
    std::vector<std::string> names_;
    std::shared_ptr<Batch> batch_ = std::make_shared<Batch>();
    bool json_, quiet_;
    std::vector<std::shared_ptr<Record>> records_;
    Failures failures_;
};

/// Runs a copy of the command on each input, by run(copy).
template <class Command, class Run>
void runEach(const Command& command, Run run) {
    EachInput each(command);
    for (const std::string& input : each.names()) {
        Command one = command;
        each.run(input, one, [&] { run(one); });
    }
    each.finish();
}

/// The same by its member run, or label by label.
template <class Command>
void runEach(const Command& command) {
    runEach(command, [](const Command& one) { runForLabels(one); });
}

}  // namespace quorbin::tool
