#include <csetjmp>
#include <csignal>

#include "image_io.h"

namespace quorbin::io::itk {

namespace {

thread_local sigjmp_buf* wayOut = nullptr;

extern "C" void leave(int) { siglongjmp(*wayOut, 1); }

}  // namespace

bool survivesAbort(void (*work)(void* data), void* data) {
    struct sigaction action = {}, before = {};
    action.sa_handler = leave;
    sigjmp_buf here;
    wayOut = &here;
    sigaction(SIGABRT, &action, &before);
    volatile bool isDone = false;
    if (sigsetjmp(here, 1) == 0) {
        work(data);
        isDone = true;
    }
    sigaction(SIGABRT, &before, nullptr);
    return isDone;
}

}  // namespace quorbin::io::itk
