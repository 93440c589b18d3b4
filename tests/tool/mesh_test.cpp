#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <assimp/Importer.hpp>

#include "tool/volume_tool.h"

namespace {

class MeshTool : public VolumeTool {
 protected:
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
    ASSERT_EQ(run("mesh ball.fl3d --band -o band.ply"), 0) << read("err");
    expectBall("band.ply", {12, 11, 13}, true, 0.3);
}

TEST_F(MeshTool, ReadsNiftiAndPlacesItByItsMatrix) {
    writeNifti();
    ASSERT_EQ(run("mesh ball.nii -o ball.ply --level 100"), 0) << read("err");
    expectBall("ball.ply", {12, 11, 13}, true);
    ASSERT_EQ(run("mesh ball.nii -o placed.ply --level 100 --affine"), 0) << read("err");
    expectBall("placed.ply", {30 - 12, 11 - 5, 13 + 7}, true);
}

TEST_F(MeshTool, DrawsAPicture) {
    writeBall(false);
    ASSERT_EQ(run("mesh ball.fl3d -o a.ply --picture a.png --view 0,0"), 0) << read("err");
    // A bright disc, whose radius is 0.46 of the picture's side.
    ASSERT_EQ(run("contour a.png --channel b --level 254 --inside below"), 0) << read("err");
    const std::string told = read("out");
    EXPECT_NE(told.find("1 polygon,"), std::string::npos) << told;
    const double area = std::strtod(told.c_str() + told.find("area ") + 5, nullptr);
    EXPECT_NEAR(area, M_PI * 368 * 368, 0.02 * M_PI * 368 * 368);
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
