#include <algorithm>
#include <filesystem>

#include <itkGDCMSeriesFileNames.h>
#include <itkMetaDataObject.h>

#include "image_io.h"

namespace quorbin::io::itk {

namespace {

/// A series as a user knows it: "4 images, T1 axial".
std::string describe(const std::vector<std::string>& files) {
    std::string text = std::to_string(files.size()) + (files.size() == 1 ? " image" : " images");
    const auto io = imageIo("DICOM");
    io->SetFileName(files.front());
    io->ReadImageInformation();
    std::string description;
    ::itk::ExposeMetaData<std::string>(io->GetMetaDataDictionary(), "0008|103e", description);
    description.erase(std::find(description.begin(), description.end(), '\0'), description.end());
    description.erase(description.find_last_not_of(' ') + 1);
    return description.empty() ? text : text + ", " + description;
}

/// All of them by number, or the first of many.
std::string list(const std::vector<std::vector<std::string>>& series) {
    constexpr std::size_t kMost = 10;
    std::string text;
    for (std::size_t i = 0; i < std::min(series.size(), kMost); ++i)
        text += (i == 0 ? "" : ", ") + std::to_string(i) + " (" + describe(series[i]) + ")";
    return series.size() > kMost ? text + " and " + std::to_string(series.size() - kMost) + " more" : text;
}

}  // namespace

bool chooseSeries(const std::string& folder, long long number, Header& header, std::string& fault) {
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file() && !isWhole("DICOM", entry.path(), 0)) {
            fault = "holds " + entry.path().filename().string() + ", which " + kNotWhole;
            return false;
        }
    const auto names = ::itk::GDCMSeriesFileNames::New();
    names->SetInputDirectory(folder);
    std::vector<std::string> uids = names->GetSeriesUIDs();
    if (uids.empty()) {
        fault = "is a folder without DICOM images; give one with a series of them, or a file";
        return false;
    }
    std::sort(uids.begin(), uids.end());
    std::vector<std::vector<std::string>> series;
    for (const std::string& uid : uids)
        if (const std::vector<std::string> files = names->GetFileNames(uid); !files.empty())
            series.push_back(files);
    if (series.empty()) {
        fault = "is a folder with DICOM files that make no series; give a file of it";
        return false;
    }
    if (number == kAnySeries && series.size() > 1) {
        fault = "has " + std::to_string(series.size()) + " series, " + list(series) +
                "; choose one by --series N";
        return false;
    }
    const auto chosen = static_cast<std::size_t>(number == kAnySeries ? 0 : number);
    if (chosen >= series.size()) {
        fault = "has no series " + std::to_string(chosen) + "; it has " + list(series);
        return false;
    }
    header.files = series[chosen];
    return true;
}

}  // namespace quorbin::io::itk
