// The demo's plate, written by the program and opened by an outside reader (the Open Asset Import
// Library): a closed mesh of the expected volume carrying the plate material.
#include <assimp/material.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <gtest/gtest.h>
#include <assimp/Importer.hpp>

#include <cmath>
#include <filesystem>
#include <map>
#include <numbers>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tools/quillon/cli.h"

namespace quillon::tool {
namespace {

TEST(QuillonPlateAssimp, DemoPlateIsClosedOfItsVolumeWithThePlateMaterial) {
    const auto dir = std::filesystem::temp_directory_path() / "quillon_plate_assimp";
    std::filesystem::remove_all(dir);
    // The job of scripts/demo.sh.
    std::istringstream in;
    std::ostringstream out, err;
    ASSERT_EQ(RunQuillon({"plate", std::string(QUILLON_SOURCE_DIR) + "/examples/plate.txt",
                          "--thickness", "10", "--hole", "40,40,18", "--hole", "360,40,18",
                          "--hole", "360,210,18", "--hole", "40,210,18", "--cut", "400,60,0,-1,1,0",
                          "--out", (dir / "plate").string()},
                         in, out, err),
              0)
        << err.str();

    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile((dir / "plate.obj").string(), aiProcess_Triangulate);
    ASSERT_NE(scene, nullptr) << importer.GetErrorString();
    std::map<std::tuple<float, float, float>, std::size_t> ids;
    std::map<std::pair<std::size_t, std::size_t>, int> runs;
    double sixfold = 0.0;
    std::vector<std::string> materials;
    for (unsigned i = 0; i < scene->mNumMeshes; ++i) {
        const aiMesh* mesh = scene->mMeshes[i];
        aiString name;
        scene->mMaterials[mesh->mMaterialIndex]->Get(AI_MATKEY_NAME, name);
        materials.push_back(name.C_Str());
        for (unsigned f = 0; f < mesh->mNumFaces; ++f) {
            const aiFace& face = mesh->mFaces[f];
            ASSERT_EQ(face.mNumIndices, 3u);
            const aiVector3D& a = mesh->mVertices[face.mIndices[0]];
            const aiVector3D& b = mesh->mVertices[face.mIndices[1]];
            const aiVector3D& c = mesh->mVertices[face.mIndices[2]];
            sixfold += double(a.x) * (double(b.y) * c.z - double(b.z) * c.y) +
                       double(a.y) * (double(b.z) * c.x - double(b.x) * c.z) +
                       double(a.z) * (double(b.x) * c.y - double(b.y) * c.x);
            for (unsigned k = 0; k < 3; ++k) {
                const auto id = [&](unsigned j) {
                    const aiVector3D& p = mesh->mVertices[face.mIndices[j]];
                    return ids.emplace(std::make_tuple(p.x, p.y, p.z), ids.size()).first->second;
                };
                ++runs[{id(k), id((k + 1) % 3)}];
            }
        }
    }
    EXPECT_EQ(materials, std::vector<std::string>{"plate"});
    bool closed = !runs.empty();
    for (const auto& [edge, n] : runs) {
        const auto back = runs.find({edge.second, edge.first});
        closed = closed && back != runs.end() && back->second == n;
    }
    EXPECT_TRUE(closed);

    // 400 x 250 with corners of radius 30, openings of radius 40 and 120 x 70, four bolt holes of
    // 18, and the corner where x - y > 340 cut off (a triangle of 60 x 60 less its rounded tip).
    constexpr double pi = std::numbers::pi;
    const double area = 400.0 * 250.0 - (4.0 - pi) * 900.0 - pi * 1600.0 - 120.0 * 70.0 -
                        4.0 * pi * 81.0 - (1800.0 - (1.0 - pi / 4.0) * 900.0);
    // Arcs become 48-gons: each loses at most 0.3 % of its circle's area.
    const double slack = 0.003 * pi * (900.0 + 1600.0 + 4.0 * 81.0) * 10.0;
    EXPECT_NEAR(std::fabs(sixfold) / 6.0, area * 10.0, slack);
}

}  // namespace
}  // namespace quillon::tool
