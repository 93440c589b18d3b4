#include "watch.h"

namespace quorbin::python {

bool Watch::look(int done, int all) {
    const Clock::time_point now = Clock::now();
    if (now < next_) return true;
    next_ = now + kPause;
    const nb::gil_scoped_acquire lock;
    if (PyErr_CheckSignals() != 0) throw nb::python_error();
    if (!tell_.is_none()) tell_(done, all);
    return true;
}

}  // namespace quorbin::python
