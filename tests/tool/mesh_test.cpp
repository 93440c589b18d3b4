#include <nifti1.h>

#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <assimp/Importer.hpp>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "volume_support.h"

namespace {

class MeshTool : public testing::Test {
 protected:
    void SetUp() override {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    int run(const std::string& arguments) const {
        const std::string command = "cd " + folder + " && " QUORBIN_TOOL " " + arguments + " >out 2>err";
        return WEXITSTATUS(std::system(command.c_str()));  // NOLINT(cert-env33-c)
    }
    std::string read(const std::string& name) const {
        std::ifstream file(folder + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// A ball of radius 8 in world units, at (12, 11, 13), with z spacing 2; a part of it beyond the volume on request.
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

    /// Reads a mesh by another program's eyes and holds every vertex to the ball around a centre.
    void expectBall(const std::string& name, aiVector3D centre, bool hasNormals,
                    double tolerance = 0.15) const {
        Assimp::Importer importer;
        const aiScene* scene = importer.ReadFile(folder + "/" + name, 0);
        ASSERT_NE(scene, nullptr) << importer.GetErrorString();
        ASSERT_EQ(scene->mNumMeshes, 1U);
        const aiMesh& mesh = *scene->mMeshes[0];
        ASSERT_GT(mesh.mNumFaces, 500U);
        ASSERT_EQ(mesh.HasNormals(), hasNormals || name.find(".stl") != std::string::npos);
        double volume = 0;
        for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
            ASSERT_EQ(mesh.mFaces[f].mNumIndices, 3U);
            aiVector3D corner[3];
            for (unsigned k = 0; k < 3; ++k) {
                const unsigned i = mesh.mFaces[f].mIndices[k];
                ASSERT_LT(i, mesh.mNumVertices);
                corner[k] = mesh.mVertices[i] - centre;
                ASSERT_NEAR(corner[k].Length(), 8, tolerance);
                if (hasNormals) {
                    ASSERT_GT(mesh.mNormals[i] * corner[k], 7.5);
                }
            }
            volume += static_cast<double>(corner[0] * (corner[1] ^ corner[2])) / 6;
        }
        EXPECT_NEAR(volume, 4 / 3.0 * M_PI * 512, 60);
    }

    std::string folder =
        (std::filesystem::temp_directory_path() / ("quorbin_mesh_" + std::to_string(getpid()))).string();
};

TEST_F(MeshTool, WritesMeshesThatOthersRead) {
    writeBall(false);
    for (const char* name : {"ball.ply", "ball.obj", "ball.stl", "soup.ply", "capped.ply"}) {
        const std::string what = std::string(name) == "soup.ply"     ? " --soup"
                                 : std::string(name) == "capped.ply" ? " --cap"
                                                                     : "";
        ASSERT_EQ(run("mesh ball.fl3d -o " + std::string(name) + what), 0) << read("err");
        expectBall(name, {12, 11, 13}, std::string(name).find(".stl") == std::string::npos);
    }
    EXPECT_NE(read("out").find("enclosed volume"), std::string::npos);
}

TEST_F(MeshTool, ReadsNiftiAndPlacesItByItsMatrix) {
    writeNifti();
    ASSERT_EQ(run("mesh ball.nii -o ball.ply --level 100"), 0) << read("err");
    expectBall("ball.ply", {12, 11, 13}, true);
    ASSERT_EQ(run("mesh ball.nii -o placed.ply --level 100 --affine"), 0) << read("err");
    expectBall("placed.ply", {30 - 12, 11 - 5, 13 + 7}, true);
}

TEST_F(MeshTool, ClosesWhatLeavesTheVolume) {
    writeBall(true);
    ASSERT_EQ(run("mesh ball.fl3d -o open.ply"), 0);
    ASSERT_EQ(run("mesh ball.fl3d -o capped.ply --cap"), 0);
    const std::string line = read("out");
    const auto at = line.find("enclosed volume ");
    ASSERT_NE(at, std::string::npos);
    // Up to z = 12, a unit below the centre of the ball: a third of pi h^2 (3 r - h) with h = 7.
    EXPECT_NEAR(std::strtod(line.c_str() + at + 16, nullptr), M_PI * 49 * (24 - 7) / 3, 30);
}

TEST_F(MeshTool, SaysWhatIsWrong) {
    writeBall(false);
    std::ofstream(folder + "/text") << "no volume";
    EXPECT_EQ(run("mesh text -o a.ply"), 2);
    EXPECT_EQ(run("mesh nowhere -o a.ply"), 2);
    EXPECT_EQ(run("mesh ball.fl3d -o a.xyz"), 2);
    EXPECT_EQ(run("mesh ball.fl3d -o a.ply --affine"), 2);
    EXPECT_EQ(run("mesh ball.fl3d -o a.ply --level -100"), 4);
    EXPECT_EQ(run("mesh ball.fl3d -o a.ply --soup --cap"), 2);
    std::filesystem::resize_file(folder + "/ball.fl3d", 1000);
    EXPECT_EQ(run("mesh ball.fl3d -o a.ply"), 2);
    EXPECT_FALSE(std::filesystem::exists(folder + "/a.ply"));
}

}  // namespace
