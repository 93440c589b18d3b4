#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <vector>

#include <quorbin.h>

#include "../failure.h"
#include "module.h"

namespace quorbin::io::itk {

namespace {

constexpr char kFile[] = "libquorbin_itk.so";

std::string folderOf(const std::string& path) { return path.substr(0, path.find_last_of('/') + 1); }

/// Where the module may lie: beside the library, or, where that is a part of the program, beside this or in
/// the folder of libraries that goes with the program's.
std::vector<std::string> places() {
    std::vector<std::string> folders;
    Dl_info library = {};
    const auto inLibrary = static_cast<double (*)(const Mesh&)>(&surfaceArea);
    if (dladdr(reinterpret_cast<const void*>(inLibrary), &library) != 0 && library.dli_fname != nullptr &&
        library.dli_fname[0] == '/')
        folders.push_back(folderOf(library.dli_fname));
    char program[PATH_MAX];
    if (realpath("/proc/self/exe", program) != nullptr) {
        folders.push_back(folderOf(program));
        folders.push_back(folderOf(program) + QUORBIN_BIN_TO_LIB "/");
    }
    return folders;
}

}  // namespace

const Module& module() {
    static const Module* const opened = [] {
        std::string why = "it is not there";
        for (const std::string& folder : places()) {
            // Never closed: ITK's libraries do not expect it.
            void* const library = dlopen((folder + kFile).c_str(), RTLD_NOW | RTLD_LOCAL);
            if (library == nullptr && access((folder + kFile).c_str(), F_OK) == 0) why = dlerror();
            if (library != nullptr) return static_cast<const Module*>(dlsym(library, kModuleSymbol));
        }
        refuse("ITK's readers and writers, {}, cannot be opened ({}); install them beside the library", kFile,
               why);
    }();
    return *opened;
}

}  // namespace quorbin::io::itk
