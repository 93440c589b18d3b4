#include "failures.h"

#include <cerrno>
#include <regex>

#include <quorbin.h>

namespace quorbin::python {

namespace nb = nanobind;

std::string inPython(const std::string& line) {
    static const std::regex valued("--([a-z]+) ([A-Z,]+|-?[0-9][^ ,;]*)"), side("--inside (above|below)"),
        alone("--([a-z]+)");
    std::string text = std::regex_replace(line, side, "inside=\"$1\"");
    text = std::regex_replace(text, valued, "$1=$2");
    return std::regex_replace(text, alone, "$1=");
}

void raiseFailure(const io::Failure& failure) {
    // A path may be any bytes.
    const std::string line = failure.what();
    const nb::object text =
        nb::steal(PyUnicode_DecodeFSDefaultAndSize(line.data(), static_cast<Py_ssize_t>(line.size())));
    if (!text.is_valid()) return;
    if (failure.status == io::kNoCrossing) {
        PyErr_SetObject(nb::module_::import_("quorbin._core").attr("NoInterface").ptr(), text.ptr());
    } else if (failure.systemError != 0) {
        // OSError knows which of its kinds a number is of; with the text alone it says nothing else.
        const nb::object kinds = nb::borrow(PyExc_OSError);
        const nb::object kind = nb::borrow(kinds(failure.systemError, "").type());
        const nb::object error = kind(text);
        error.attr("errno") = failure.systemError;
        PyErr_SetObject(kind.ptr(), error.ptr());
    } else {
        PyErr_SetObject(failure.status == io::kBadUsage ? PyExc_ValueError : PyExc_OSError, text.ptr());
    }
}

}  // namespace quorbin::python
