#pragma once

#include <nifti1.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "quorbin3d/dense_support.h"

/// Runs the tool on volumes, in a folder of its own.
class VolumeTool : public testing::Test {
 protected:
    void SetUp() override {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    int run(const std::string& arguments) const {
        const std::string command = "cd " + folder + " && " QUORBIN_TOOL " " + arguments + " >out 2>err";
        return WEXITSTATUS(std::system(command.c_str()));
    }
    std::string read(const std::string& name) const {
        std::ifstream file(folder + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// A ball of radius 8 in world units, at (12, 11, 13), with z spacing 2; a part of it beyond the volume
    /// on request.
    void writeBall(bool isCut) const {
        FullLevelSet3D grid;
        fill(
            grid, {25, 23, isCut ? 7 : 14},
            [](int x, int y, int z) { return std::hypot(x - 12.0, y - 11.0, 2.0 * z - 13) - 8; }, 1, 1, 2);
        ASSERT_TRUE(grid.save((folder + "/ball.fl3d").c_str()));
    }

    /// The same as an image of bytes, bright inside, placed by a matrix that turns x over.
    void writeNifti() const {
        nifti_1_header header = {};
        header.sizeof_hdr = 348;
        std::memcpy(header.magic, "n+1", 4);
        const short dim[8] = {3, 25, 23, 14, 1, 1, 1, 1};
        std::copy(dim, dim + 8, header.dim);
        const float pixdim[8] = {1, 1, 1, 2, 1, 1, 1, 1};
        std::copy(pixdim, pixdim + 8, header.pixdim);
        header.datatype = DT_UINT8;
        header.bitpix = 8;
        header.vox_offset = 352;
        header.sform_code = 1;
        const float rows[3][4] = {{-1, 0, 0, 30}, {0, 1, 0, -5}, {0, 0, 2, 7}};
        std::copy(rows[0], rows[0] + 4, header.srow_x);
        std::copy(rows[1], rows[1] + 4, header.srow_y);
        std::copy(rows[2], rows[2] + 4, header.srow_z);
        std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
        bytes.append(4, '\0');
        for (int z = 0; z < 14; ++z)
            for (int y = 0; y < 23; ++y)
                for (int x = 0; x < 25; ++x) {
                    const double outward = std::hypot(x - 12.0, y - 11.0, 2.0 * z - 13) - 8;
                    bytes += static_cast<char>(
                        static_cast<unsigned char>(std::lround(100 - 20 * std::clamp(outward, -5.0, 5.0))));
                }
        std::ofstream(folder + "/ball.nii", std::ios::binary) << bytes;
    }

    std::string folder =
        (std::filesystem::temp_directory_path() / ("quorbin_volume_" + std::to_string(getpid()))).string();
};
