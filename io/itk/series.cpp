#include <algorithm>
#include <filesystem>

#include <itkGDCMSeriesFileNames.h>

#include "image_io.h"

namespace quorbin::io::itk {

bool listSeries(const std::string& folder, Header& header, std::string& fault) {
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file() && !isWhole("DICOM", entry.path(), 0)) {
            fault = "holds " + entry.path().filename().string() + ", which " + kNotWhole;
            return false;
        }
    const auto names = ::itk::GDCMSeriesFileNames::New();
    names->SetInputDirectory(folder);
    std::vector<std::string> series = names->GetSeriesUIDs();
    if (series.empty()) {
        fault = "is a folder without DICOM images; give one with a series of them, or a file";
        return false;
    }
    std::sort(series.begin(), series.end());
    for (const std::string& uid : series) {
        const std::vector<std::string> files = names->GetFileNames(uid);
        if (files.size() > header.files.size()) header.files = files;
    }
    if (header.files.empty()) {
        fault = "is a folder with DICOM files that make no series; give a file of it";
        return false;
    }
    if (series.size() > 1)
        header.note = "has " + std::to_string(series.size()) + " series; the largest is read, of " +
                      std::to_string(header.files.size()) + " files";
    return true;
}

}  // namespace quorbin::io::itk
