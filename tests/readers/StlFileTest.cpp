#include "apps/vrnview/readers/StlFile.h"

#include "apps/vrnview/readers/GeometryUri.h"
#include "tests/apps/TestFiles.h"
#include "tests/readers/ReaderTest.h"

namespace vrn::host {
namespace {

using test::ErrorOf;

class StlFile : public test::FileTest {
protected:
    std::filesystem::path box(const std::string& name) const {
        const std::filesystem::path path = folder.getPath() / name;
        test::WriteBinaryStl(path, test::BoxTriangles({0, 0, 0}, {1, 2, 3}));
        return path;
    }
};

TEST_F(StlFile, PlainFileGoesByItsUri) {
    const auto file = box("a.Stl");
    const auto mesh = ReadStlFile(file, {1, 1, 1});
    EXPECT_EQ(mesh->name, GeometryUri(file));
    EXPECT_EQ(mesh->indices.size(), 36u);
    EXPECT_FLOAT_EQ(mesh->getBox().max.z, 3);
}

TEST_F(StlFile, UnitBecomesPartOfTheName) {
    const auto file = box("a.stl");
    const auto mesh = ReadStlFile(file, {1000, 1000, 1000});
    EXPECT_EQ(mesh->name, GeometryUri(file) + "*1000");
    EXPECT_FLOAT_EQ(mesh->getBox().max.z, 3000);
    EXPECT_NE(StlName(file, {1, 2, 3}), StlName(file, {1, 2, 2}));
}

/// The normal of the first triangle by its corners' order.
rob::Vec3Template<float> FirstNormal(const visual::Mesh& mesh) {
    const auto& a = mesh.vertices[mesh.indices[0]];
    const auto& b = mesh.vertices[mesh.indices[1]];
    const auto& c = mesh.vertices[mesh.indices[2]];
    return (b - a).cross(c - a).normalized();
}

TEST_F(StlFile, MirroredTrianglesStillShowTheirOutside) {
    const auto file = box("a.stl");
    for (const rob::Vec3Template<double>& scale :
         {rob::Vec3Template<double>{-1, 1, 1}, {1, -2, 1}, {-1, -1, -1}, {2, 3, 4}, {-1, -1, 1}}) {
        const auto mesh = ReadStlFile(file, scale);
        const rob::Vec3Template<float> turned = FirstNormal(*mesh);
        const auto& stored = mesh->normals[mesh->indices[0]];
        EXPECT_GT(turned.dot(stored), 0.99f) << scale.x << ' ' << scale.y << ' ' << scale.z;
    }
}

TEST_F(StlFile, BrokenFilesSayWhatIsWrong) {
    const std::string whole = test::ReadBytes(box("a.stl"));
    EXPECT_EQ(
        ErrorOf([&] { (void)ReadStlFile(write("cut.stl", whole.substr(0, 300)), {1, 1, 1}); }),
        "Bad STL File: a binary STL of 12 triangles has 684 bytes, this file has 300");
    EXPECT_EQ(ErrorOf([&] { (void)ReadStlFile(write("x.stl", "hello"), {1, 1, 1}); }),
              "Bad STL File");
    EXPECT_EQ(ErrorOf([&] { (void)ReadStlFile(write("e.stl", ""), {1, 1, 1}); }),
              "the file is empty");
    EXPECT_EQ(ErrorOf([&] { (void)ReadStlFile(folder.getPath() / "no.stl", {1, 1, 1}); }),
              "No such file or directory");
    EXPECT_EQ(ErrorOf([&] { (void)ReadStlFile(folder.getPath(), {1, 1, 1}); }),
              "is a directory, not a file");
}

}  // namespace
}  // namespace vrn::host
