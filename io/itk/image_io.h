#pragma once

#include <string>

#include <itkImageIOBase.h>

#include "../quiet_output.h"
#include "module.h"

namespace quorbin::io::itk {

/// ITK's reader and writer of a format of the table.
::itk::ImageIOBase::Pointer imageIo(const std::string& format);

/// Whether a file of DICOM, MRC or MetaImage, whose samples come to so many bytes, is as long as it says,
/// which ITK's readers do not ask: they would give what memory holds, or end the program.
bool isWhole(const std::string& format, const std::string& path, std::size_t sampleBytes);

inline constexpr char kNotWhole[] = "ends before its samples do; give the whole file";

/// Finds the files of one of a folder's series of DICOM images, which are numbered from 0 in the order of
/// their UIDs. A folder without any is a fault, and one with several of which none is chosen.
bool chooseSeries(const std::string& folder, long long number, Header& header, std::string& fault);

/// The key of a header's field that says in words what the file holds.
inline const char* markKey(const std::string& format) {
    return format == "NRRD" ? "NRRD_content" : "Content";
}

bool write(const char* format, const char* path, const Volume& volume, std::string& fault);

/// Turns off ITK's warnings.
void silence();

/// Calls work(data); false where it ended in abort(), which gdcm does with some damaged files. What it held
/// then is lost.
bool survivesAbort(void (*work)(void* data), void* data);

/// Runs work with all warnings silent. What it throws becomes a fault, but for a lack of memory.
template <class Work>
bool guarded(const char* format, std::string& fault, Work work) {
    silence();
    const QuietOutput quiet(STDERR_FILENO), quietToo(STDOUT_FILENO);
    bool isDone = false, hasMemory = true;
    // What ITK says names its own classes and lines, over several lines.
    fault =
        std::string("cannot be read as ") + format +
        ": it is not whole, or of a kind that is not known; give all of it, with the files of its samples";
    auto body = [&] {
        try {
            isDone = work();
        } catch (const std::bad_alloc&) {
            hasMemory = false;
        } catch (const std::exception&) {
        }
    };
    survivesAbort([](void* data) { (*static_cast<decltype(body)*>(data))(); }, &body);
    if (!hasMemory) throw std::bad_alloc();
    return isDone;
}

}  // namespace quorbin::io::itk
