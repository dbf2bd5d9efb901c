#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <minizip/zip.h>
#include <OgreArchiveManager.h>
#include <OgreDataStream.h>
#include <OgreResourceGroupManager.h>

#include "engine/RenderEngine.h"
#include "engine/VerranoResourceArchive.h"
#include "suite/common/Resources.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using testing::IsEmpty;
using visual::VerranoResourceArchiveFactory;

namespace {

struct ZipEntry {
    std::string name;
    std::string bytes;
};

void WriteZip(const std::filesystem::path& file, const std::vector<ZipEntry>& entries) {
    zipFile zip = zipOpen64(file.c_str(), APPEND_STATUS_CREATE);
    ASSERT_NE(zip, nullptr);
    for (const ZipEntry& entry : entries) {
        const zip_fileinfo info{};
        ASSERT_EQ(zipOpenNewFileInZip(zip, entry.name.c_str(), &info, nullptr, 0, nullptr, 0,
                                      nullptr, Z_DEFLATED, Z_DEFAULT_COMPRESSION),
                  ZIP_OK);
        ASSERT_EQ(
            zipWriteInFileInZip(zip, entry.bytes.data(), static_cast<unsigned>(entry.bytes.size())),
            ZIP_OK);
        zipCloseFileInZip(zip);
    }
    ASSERT_EQ(zipClose(zip, nullptr), ZIP_OK);
}

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void WriteAll(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

std::vector<std::string> NamesOf(const Ogre::FileInfoList& infos) {
    std::vector<std::string> names;
    for (const auto& info : infos) names.push_back(info.filename);
    return names;
}

}  // namespace

/// An archive of "resource://material" over a package that the test chooses.
class ResourceArchive : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        use(folder() / "archive.zip");
        WriteZip(package, {{"x", "one letter"},
                           {"material/", ""},
                           {"material/Body.material", std::string(1000, 'a')},
                           {"material/Line.material", "line"},
                           {"material/sub/", ""},
                           {"material/sub/Deep.material", "deep"},
                           {"material/Empty.txt", ""},
                           {"materials/Alien.material", "of another folder"},
                           {"program/Body.glsl", "void main() {}"}});
        archive.reset(factory.createInstance("resource://material", /*readOnly=*/true));
    }
    void TearDown() override {
        common::SetResourcePath({});
        std::error_code ignored;
        std::filesystem::remove_all(package, ignored);
        EngineTest::TearDown();
    }
    void use(const std::filesystem::path& path) {
        package = path;
        common::SetResourcePath(package);
    }
    std::string read(const std::string& name) { return archive->open(name, true)->getAsString(); }

    struct Destroyer {
        void operator()(Ogre::Archive* archive) const {
            VerranoResourceArchiveFactory().destroyInstance(archive);
        }
    };
    VerranoResourceArchiveFactory factory;
    std::unique_ptr<Ogre::Archive, Destroyer> archive;
    std::filesystem::path package;
};

// --- the factory

TEST_F(ResourceArchive, TypeIsVerranoResourceBuiltOnce) {
    EXPECT_EQ(factory.getType(), "VerranoResource");
    EXPECT_EQ(&factory.getType(), &VerranoResourceArchiveFactory().getType());
}

TEST_F(ResourceArchive, IsMadeForReadingAlone) {
    EXPECT_EQ(factory.createInstance("resource://material", /*readOnly=*/false), nullptr);
    EXPECT_EQ(archive->getName(), "resource://material");
    EXPECT_EQ(archive->getType(), "VerranoResource");
    EXPECT_TRUE(archive->isReadOnly());
    EXPECT_TRUE(archive->isCaseSensitive());
}

TEST_F(ResourceArchive, OneArgumentMakesAReadableArchive) {
    const std::unique_ptr<Ogre::Archive, Destroyer> inherited(
        static_cast<Ogre::ArchiveFactory&>(factory).createInstance("resource://program", true));
    EXPECT_TRUE(inherited->exists("Body.glsl"));
}

TEST_F(ResourceArchive, EngineServesItsTwoLocationsThroughIt) {
    const auto locations =
        Ogre::ResourceGroupManager::getSingleton().getResourceLocationList("General");
    std::vector<std::string> names;
    for (const auto& location : locations) {
        if (location.archive->getType() != "VerranoResource") continue;
        EXPECT_FALSE(location.recursive);
        EXPECT_TRUE(location.archive->isReadOnly());
        names.push_back(location.archive->getName());
    }
    EXPECT_THAT(names, ElementsAre("resource://material", "resource://program"));
}

// --- what it cannot do

TEST_F(ResourceArchive, CreatesAndRemovesNothing) {
    EXPECT_EQ(archive->create("New.material"), nullptr);
    archive->remove("Body.material");
    EXPECT_TRUE(archive->exists("Body.material"));
}

TEST_F(ResourceArchive, ListsNothingAndKnowsNoTimes) {
    ASSERT_NE(archive->list(true, false), nullptr);
    EXPECT_THAT(*archive->list(true, false), IsEmpty());
    EXPECT_EQ(archive->getModifiedTime("Body.material"), 0);
}

TEST_F(ResourceArchive, LoadingAndUnloadingChangeNothing) {
    archive->load();
    EXPECT_EQ(read("Line.material"), "line");
    archive->unload();
    EXPECT_EQ(read("Line.material"), "line");
}

// --- names

TEST_F(ResourceArchive, ABareNameIsRelativeToTheLocation) {
    EXPECT_TRUE(archive->exists("Body.material"));
    EXPECT_TRUE(archive->exists("sub/Deep.material"));
    EXPECT_FALSE(archive->exists("body.material"));
    EXPECT_FALSE(archive->exists("x"));
    EXPECT_FALSE(archive->exists("Body.glsl"));
    EXPECT_FALSE(archive->exists("Missing.material"));
}

TEST_F(ResourceArchive, AFullNameOfTwelveCharactersIsTakenAsItStands) {
    const std::string full = "resource://x";
    ASSERT_EQ(full.size(), 12u);
    EXPECT_TRUE(archive->exists(full));
    EXPECT_EQ(read(full), "one letter");
    EXPECT_TRUE(archive->exists("resource://program/Body.glsl"));
}

TEST_F(ResourceArchive, ANameThatIsOnlyLikeAFullOneIsRelative) {
    for (const char* name : {"resource:/", "resource:/x", "Resource://x", "file://x"})
        EXPECT_FALSE(archive->exists(name)) << name;
    EXPECT_FALSE(archive->exists("resource://"));
}

// --- reading

TEST_F(ResourceArchive, OpensBytesInAReadOnlyStreamOfTheirOwn) {
    const Ogre::DataStreamPtr stream = archive->open("Body.material", true);
    EXPECT_EQ(stream->getName(), "Body.material");
    EXPECT_FALSE(stream->isWriteable());
    EXPECT_EQ(stream->size(), 1000u);
    std::filesystem::remove(package);
    EXPECT_EQ(stream->getAsString(), std::string(1000, 'a'));
}

TEST_F(ResourceArchive, OpensAnEmptyFile) {
    EXPECT_EQ(archive->open("Empty.txt", true)->size(), 0u);
    EXPECT_EQ(read("Empty.txt"), "");
}

TEST_F(ResourceArchive, OpensForWritingGiveTheSameReadOnlyStream) {
    EXPECT_FALSE(archive->open("Line.material", /*readOnly=*/false)->isWriteable());
}

TEST_F(ResourceArchive, AMissingFileThrowsNamingItsUri) {
    try {
        (void)archive->open("Missing.material", true);
        FAIL() << "the missing file was opened";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("resource://material/Missing.material"));
    }
}

// --- finding

TEST_F(ResourceArchive, FindsByPatternAndAnswersRelativeNames) {
    EXPECT_THAT(*archive->find("*.material", /*recursive=*/false, /*dirs=*/false),
                ElementsAre("Body.material", "Line.material"));
    EXPECT_THAT(*archive->find("*.material", /*recursive=*/true, /*dirs=*/false),
                ElementsAre("Body.material", "Line.material", "sub/Deep.material"));
}

TEST_F(ResourceArchive, MatchesThePatternAgainstTheFullName) {
    EXPECT_THAT(*archive->find("resource://material/L*", true, false),
                ElementsAre("Line.material"));
    EXPECT_THAT(*archive->find("*/Line.material", true, false), ElementsAre("Line.material"));
    EXPECT_THAT(*archive->find("Line.material", true, false), IsEmpty());
    EXPECT_THAT(*archive->find("*/line.material", true, false), IsEmpty());
}

TEST_F(ResourceArchive, FindsNothingAsAnEmptyListAndNotNull) {
    ASSERT_NE(archive->find("*.nothing", true, false), nullptr);
    EXPECT_THAT(*archive->find("*.nothing", true, false), IsEmpty());
    ASSERT_NE(archive->findFileInfo("*.nothing", true, false), nullptr);
    EXPECT_THAT(*archive->findFileInfo("*.nothing", true, false), IsEmpty());
}

TEST_F(ResourceArchive, KnowsNoFolders) {
    EXPECT_THAT(*archive->find("*", true, /*dirs=*/true), IsEmpty());
    EXPECT_THAT(*archive->findFileInfo("*", true, /*dirs=*/true), IsEmpty());
    EXPECT_THAT(*archive->listFileInfo(true, /*dirs=*/true), IsEmpty());
}

TEST_F(ResourceArchive, TellsPathBaseNameAndSizesOfAFile) {
    const auto found = archive->findFileInfo("*Deep*", true, false);
    ASSERT_EQ(found->size(), 1u);
    const Ogre::FileInfo& info = found->front();
    EXPECT_EQ(info.archive, archive.get());
    EXPECT_EQ(info.filename, "sub/Deep.material");
    EXPECT_EQ(info.path, "sub/");
    EXPECT_EQ(info.basename, "Deep.material");
    EXPECT_EQ(info.uncompressedSize, 4u);
    const auto body = archive->findFileInfo("*Body*", false, false);
    ASSERT_EQ(body->size(), 1u);
    EXPECT_EQ(body->front().path, "");
    EXPECT_EQ(body->front().uncompressedSize, 1000u);
    EXPECT_GT(body->front().compressedSize, 0u);
    EXPECT_LT(body->front().compressedSize, 100u);
}

TEST_F(ResourceArchive, ListsTheInfoOfEveryFile) {
    EXPECT_THAT(NamesOf(*archive->listFileInfo(true, false)),
                ElementsAre("Body.material", "Line.material", "sub/Deep.material", "Empty.txt"));
}

// --- packages that are not there or not whole

TEST_F(ResourceArchive, AMissingPackageIsAnEmptyArchive) {
    use(folder() / "no-such.zip");
    EXPECT_FALSE(archive->exists("Body.material"));
    EXPECT_THAT(*archive->find("*", true, false), IsEmpty());
    EXPECT_THAT(*archive->listFileInfo(true, false), IsEmpty());
    EXPECT_THROW((void)archive->open("Body.material", true), std::runtime_error);
}

TEST_F(ResourceArchive, APackagePathThatCannotBeLookedAtIsAnEmptyArchive) {
    use(std::string(5000, 'n'));  // longer than any file system's names
    EXPECT_THAT(*archive->find("*", true, false), IsEmpty());
    EXPECT_FALSE(archive->exists("Body.material"));
}

TEST_F(ResourceArchive, AFolderOrAFileThatIsNoZipIsAnEmptyArchive) {
    const auto garbage = folder() / "garbage.zip";
    WriteAll(garbage, std::string(500, 'z'));
    for (const auto& path : {garbage, folder()}) {
        common::SetResourcePath(path);
        EXPECT_FALSE(archive->exists("Body.material")) << path;
        EXPECT_THAT(*archive->find("*", true, false), IsEmpty()) << path;
        EXPECT_THROW((void)archive->open("Body.material", true), std::runtime_error) << path;
    }
    common::SetResourcePath(package);
}

TEST_F(ResourceArchive, AnEntryWhoseNameIsCutOffRaisesAnError) {
    std::string bytes = ReadAll(package);
    // The length of the last entry's name in the directory at the file's end, made too large.
    const std::size_t entry = bytes.rfind("PK\x01\x02");
    ASSERT_NE(entry, std::string::npos);
    bytes[entry + 28] = '\xff';
    bytes[entry + 29] = '\xff';
    WriteAll(package, bytes);
    try {
        (void)archive->find("*", true, false);
        FAIL() << "the broken directory went unnoticed";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Get current file info failed");
    }
}

TEST_F(ResourceArchive, EveryCutPackageEitherListsOrThrows) {
    const std::string whole = ReadAll(package);
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        WriteAll(package, whole.substr(0, size));
        try {
            (void)archive->find("*", true, false);
            (void)archive->exists("Body.material");
            (void)archive->open("Body.material", true);
        } catch (const std::runtime_error&) {
        }
    }
}

TEST_F(ResourceArchive, APackageExchangedMeanwhileIsSeenAtOnce) {
    const auto other = folder() / "other.zip";
    WriteZip(other, {{"material/New.material", "new"}});
    common::SetResourcePath(other);
    EXPECT_THAT(*archive->find("*", true, false), ElementsAre("New.material"));
    EXPECT_EQ(read("New.material"), "new");
    std::filesystem::remove(other);
}

}  // namespace vrn::test
