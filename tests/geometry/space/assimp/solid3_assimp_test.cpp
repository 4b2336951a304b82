// The OBJ and MTL files that solids write, opened by an outside reader (the Open Asset Import
// Library): what people load our files with must see the same mesh we wrote.
#include <assimp/material.h>
#include <assimp/scene.h>
#include <gtest/gtest.h>
#include <assimp/Importer.hpp>

#include <filesystem>
#include <map>
#include <string>

#include "quillon/geometry/space/solid3.h"
#include "tests/geometry/space/space_test_support.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// What a viewer would show of the file `path` read by the outside reader: the mesh as a solid
// (points identified by position), faces per material name and the diffuse colours.
struct Seen {
    Solid3 mesh{1e-12};
    std::map<std::string, std::size_t> facesByMaterial;
    std::map<std::string, aiColor3D> diffuse;
};

Seen Open(const fs::path& path) {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(path.string(), 0);
    EXPECT_NE(scene, nullptr) << importer.GetErrorString();
    Seen seen;
    for (unsigned m = 0; scene && m < scene->mNumMaterials; ++m) {
        aiString name;
        scene->mMaterials[m]->Get(AI_MATKEY_NAME, name);
        scene->mMaterials[m]->Get(AI_MATKEY_COLOR_DIFFUSE, seen.diffuse[name.C_Str()]);
    }
    for (unsigned i = 0; scene && i < scene->mNumMeshes; ++i) {
        const aiMesh* mesh = scene->mMeshes[i];
        aiString material;
        scene->mMaterials[mesh->mMaterialIndex]->Get(AI_MATKEY_NAME, material);
        seen.facesByMaterial[material.C_Str()] += mesh->mNumFaces;
        for (unsigned f = 0; f < mesh->mNumFaces; ++f) {
            Face3 face;
            for (unsigned c = 0; c < mesh->mFaces[f].mNumIndices; ++c) {
                const aiVector3D& p = mesh->mVertices[mesh->mFaces[f].mIndices[c]];
                face.loop.push_back(
                    static_cast<std::uint32_t>(seen.mesh.GetVertexInd(Point3(p.x, p.y, p.z))));
            }
            seen.mesh.AddFace(face);
        }
    }
    return seen;
}

class Solid3Assimp : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("quillon_assimp_" +
               std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    fs::path dir;
};

// A plate with two holes (its caps go out as triangles), sides of one material with normals,
// caps of another.
TEST_F(Solid3Assimp, HoledPrismOfTwoMaterialsOpensClosedWithBoth) {
    Solid3 s;
    const Mvector<Point3> base{{0, 0, 0}, {0, 4, 0}, {6, 4, 0}, {6, 0, 0}};  // either turn
    const Mmatrix<Point3> holes{{{1, 1, 0}, {2, 1, 0}, {2, 3, 0}, {1, 3, 0}},
                                {{4, 1, 0}, {5, 2, 0}, {4, 3, 0}}};
    ASSERT_TRUE(s.GenCuboid(base, Vector3(0, 0, -2), holes));
    Material3 steel(L"steel"), glass(L"glass");
    steel.diffuse = Vector3(0.25, 0.5, 0.75);
    glass.diffuse = Vector3(0.1, 0.9, 0.3);
    glass.opacity = 0.4;
    s.AddMaterial(steel);
    s.AddMaterial(glass);
    const std::size_t sides = s.Face().size() - 2;
    std::size_t capTriangles = 0;
    for (std::size_t f = 0; f < s.Face().size(); ++f) {
        Face3& face = s.Face()[f];
        face.material = f < sides ? 0 : 1;
        Mmatrix<std::size_t> tris;
        if (f >= sides) {
            ASSERT_TRUE(s.TriangulateFace(f, tris));
            capTriangles += tris.size();
            continue;
        }
        const Vector3 n = face.GetNormal(s.Vertex(), 1e-9);
        face.normalLoop.assign(face.loop.size(), static_cast<std::uint32_t>(s.AddNormal(n, true)));
    }
    ASSERT_EQ(s.SavetoObj(dir / "plate.obj"), 1);
    const Seen seen = Open(dir / "plate.obj");
    EXPECT_EQ(seen.mesh.Vertex().size(), s.Vertex().size());
    EXPECT_EQ(seen.mesh.Face().size(), sides + capTriangles);
    EXPECT_TRUE(space_test::Closed(seen.mesh));
    EXPECT_NEAR(space_test::Volume(seen.mesh), 2 * (24 - 2 - 1), 1e-9) << "outward";
    EXPECT_EQ(seen.facesByMaterial.at("steel"), sides);
    EXPECT_EQ(seen.facesByMaterial.at("glass"), capTriangles);
    EXPECT_FLOAT_EQ(seen.diffuse.at("steel").b, 0.75f);
    EXPECT_FLOAT_EQ(seen.diffuse.at("glass").g, 0.9f);
}

}  // namespace
}  // namespace quillon
