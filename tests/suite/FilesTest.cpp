#include "suite/common/Files.h"

#include "suite/common/Resources.h"
#include "suite/common/ZipManager.h"
#include "tests/suite/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <minizip/zip.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

using vrn::common::GetResourcePath;
using vrn::common::SetResourcePath;
using vrn::common::ZipManager;

void WriteZip(const std::filesystem::path& file,
              const std::vector<std::pair<std::string, std::string>>& entries) {
    const zipFile zip = zipOpen64(file.c_str(), APPEND_STATUS_CREATE);
    for (const auto& [name, bytes] : entries) {
        zipOpenNewFileInZip64(zip, name.c_str(), nullptr, nullptr, 0, nullptr, 0, nullptr,
                              Z_DEFLATED, Z_DEFAULT_COMPRESSION, 0);
        zipWriteInFileInZip(zip, bytes.data(), static_cast<unsigned>(bytes.size()));
        zipCloseFileInZip(zip);
    }
    zipClose(zip, nullptr);
}

std::string ErrorOfReading(const std::string& uri) {
    try {
        (void)vrn::ReadFileFromURI(uri);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "none";
}

class ResourcePackage : public testing::Test {
protected:
    ResourcePackage() {
        std::string large;
        for (int i = 0; i < 200'000; ++i) large += std::to_string(i);
        WriteZip(package, {{"material/Solid.material", "material Solid {}\n"},
                           {"program/empty.glsl", ""},
                           {"program/large.glsl", large}});
        SetResourcePath(package);
        largeText = large;
    }
    ~ResourcePackage() override { SetResourcePath({}); }

    TemporaryFolder folder;
    std::filesystem::path package = folder.path / "resources.zip";
    std::string largeText;
};

TEST(GetResourcePath, DefaultLiesBesideTheFolderOfTheLibrary) {
    const std::filesystem::path path = GetResourcePath();
    EXPECT_TRUE(path.is_absolute());
    EXPECT_THAT(path.string(), testing::EndsWith("/share/vrnvisual/resources.zip"));
    const auto prefix = path.parent_path().parent_path().parent_path();
    EXPECT_TRUE(std::filesystem::exists(prefix / "lib" / "libvrncommon.so")) << prefix;
}

TEST_F(ResourcePackage, SetPathIsAnsweredUntilAnEmptyOneRestoresTheDefault) {
    EXPECT_EQ(GetResourcePath(), package);
    SetResourcePath({});
    EXPECT_THAT(GetResourcePath().string(), testing::EndsWith("/share/vrnvisual/resources.zip"));
}

TEST_F(ResourcePackage, EntriesAreReadWhole) {
    EXPECT_EQ(vrn::ReadFileFromURI("resource://material/Solid.material"), "material Solid {}\n");
    EXPECT_EQ(vrn::ReadFileFromURI("resource://program/empty.glsl"), "");
    EXPECT_EQ(vrn::ReadFileFromURI("resource://program/large.glsl"), largeText);
}

TEST_F(ResourcePackage, ExistsKnowsEntriesByTheirExactName) {
    EXPECT_TRUE(ZipManager::Exists("resource://material/Solid.material"));
    EXPECT_TRUE(ZipManager::Exists("resource://program/empty.glsl"));
    EXPECT_FALSE(ZipManager::Exists("resource://material/solid.material"));
    EXPECT_FALSE(ZipManager::Exists("resource://material"));
    EXPECT_FALSE(ZipManager::Exists("resource://"));
    EXPECT_FALSE(ZipManager::Exists("material/Solid.material"));
    EXPECT_FALSE(ZipManager::Exists("station://material/Solid.material"));
}

TEST_F(ResourcePackage, MissingEntryIsNamedWithTheReason) {
    EXPECT_EQ(ErrorOfReading("resource://material/none"),
              "cannot read resource://material/none: no such entry in the package");
}

TEST_F(ResourcePackage, OtherSchemesAreRefusedByName) {
    for (const char* uri : {"station://a.stl", "file:///a.stl", "a.stl", "Resource://a", ""})
        EXPECT_EQ(ErrorOfReading(uri),
                  std::string("cannot read ") + uri + ": expected a URI of scheme resource://");
}

TEST_F(ResourcePackage, MissingAndBrokenPackagesAreReported) {
    const auto missing = folder.path / "none.zip";
    SetResourcePath(missing);
    EXPECT_EQ(ErrorOfReading("resource://a"),
              "cannot read resource://a: resource package " + missing.string() + " does not exist");
    EXPECT_FALSE(ZipManager::Exists("resource://material/Solid.material"));

    const auto broken = folder.path / "broken.zip";
    WriteWhole(broken, "no zip at all");
    SetResourcePath(broken);
    EXPECT_EQ(ErrorOfReading("resource://a"), "cannot read resource://a: resource package " +
                                                  broken.string() + " is not a readable zip file");
    EXPECT_FALSE(ZipManager::Exists("resource://material/Solid.material"));
}

TEST_F(ResourcePackage, DamagedEntryIsReportedAndNotReturnedInPart) {
    std::string bytes = ReadWhole(package);
    const std::size_t name = bytes.find("program/large.glsl");
    for (std::size_t i = 0; i < 64; ++i) bytes[name + 1000 + i] = '\0';
    WriteWhole(folder.path / "damaged.zip", bytes);
    SetResourcePath(folder.path / "damaged.zip");
    EXPECT_EQ(ErrorOfReading("resource://program/large.glsl"),
              "cannot read resource://program/large.glsl: entry is damaged");
    EXPECT_EQ(vrn::ReadFileFromURI("resource://material/Solid.material"), "material Solid {}\n");
}

TEST_F(ResourcePackage, SeveralThreadsReadAtOnce) {
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 5; ++i) {
                if (vrn::ReadFileFromURI("resource://program/large.glsl") != largeText) ++wrong;
                SetResourcePath(package);
            }
        });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(wrong, 0);
}

class UriToFilePath : public testing::Test {
protected:
    ~UriToFilePath() override { vrn::SetStationFolder({}); }
};

TEST_F(UriToFilePath, StationUrisAreRelativeToTheStationFolder) {
    EXPECT_EQ(vrn::UriToFilePath("station://parts/a.stl"), "parts/a.stl");
    vrn::SetStationFolder("/cells/one");
    EXPECT_EQ(vrn::GetStationFolder(), "/cells/one");
    EXPECT_EQ(vrn::UriToFilePath("station://parts/a%20b.stl"), "/cells/one/parts/a%20b.stl");
    EXPECT_EQ(vrn::UriToFilePath("station:///parts/a.stl"), "/cells/one/parts/a.stl");
}

TEST_F(UriToFilePath, FileUrisAreDecoded) {
    EXPECT_EQ(vrn::UriToFilePath("file:///data/a%20b%2Fc.stl"), "/data/a b/c.stl");
    EXPECT_EQ(vrn::UriToFilePath("file:///data/%C3%A4.stl"), "/data/\xC3\xA4.stl");
}

TEST_F(UriToFilePath, MalformedEscapesStayAsTheyAre) {
    EXPECT_EQ(vrn::UriToFilePath("file:///100%"), "/100%");
    EXPECT_EQ(vrn::UriToFilePath("file:///100%2"), "/100%2");
    EXPECT_EQ(vrn::UriToFilePath("file:///%zz%-1%2x"), "/%zz%-1%2x");
}

TEST_F(UriToFilePath, PlainPathIsTakenLiterally) {
    EXPECT_EQ(vrn::UriToFilePath("/data/a%20b.stl"), "/data/a%20b.stl");
    EXPECT_EQ(vrn::UriToFilePath("a:b/c.stl"), "a:b/c.stl");
    EXPECT_EQ(vrn::UriToFilePath(""), "");
}

TEST_F(UriToFilePath, OtherSchemesAreRefusedByName) {
    EXPECT_THAT([] { (void)vrn::UriToFilePath("resource://a.stl"); },
                testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("resource://a.stl")));
}

}  // namespace
