#include <minizip/unzip.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vrn::test {

namespace {

namespace fs = std::filesystem;

std::set<std::string> PackedEntries() {
    std::set<std::string> entries;
    unzFile package = unzOpen64(VRN_RESOURCE_PACKAGE);
    if (!package) return entries;
    for (int found = unzGoToFirstFile(package); found == UNZ_OK; found = unzGoToNextFile(package)) {
        std::array<char, 512> name{};
        unzGetCurrentFileInfo64(package, nullptr, name.data(), name.size(), nullptr, 0, nullptr, 0);
        entries.insert(name.data());
    }
    unzClose(package);
    return entries;
}

std::set<std::string> SourceEntries() {
    std::set<std::string> entries;
    const fs::path root = VRN_RESOURCE_SOURCES;
    for (const char* folder : {"material", "program"})
        for (const auto& file : fs::recursive_directory_iterator(root / folder))
            entries.insert(fs::relative(file.path(), root).generic_string());
    return entries;
}

bool IsScript(const fs::path& file) {
    return file.extension() == ".material" || file.extension() == ".program" ||
           file.extension() == ".compositor";
}

std::string WithoutComment(std::string line) {
    line.erase(std::min(line.find("//"), line.size()));
    line.erase(0, std::min(line.find_first_not_of(" \t"), line.size()));
    line.erase(line.find_last_not_of(" \t") + 1);
    return line;
}

/// Words that begin an attribute or a block; two of them on a line are two attributes.
const std::set<std::string> attributeWords{"technique",
                                           "pass",
                                           "scheme",
                                           "cull_hardware",
                                           "depth_bias",
                                           "depth_check",
                                           "depth_write",
                                           "colour_write",
                                           "polygon_mode",
                                           "line_width",
                                           "point_size",
                                           "vertex_program_ref",
                                           "geometry_program_ref",
                                           "fragment_program_ref",
                                           "param_named",
                                           "param_named_auto",
                                           "separate_scene_blend",
                                           "transparent_sorting",
                                           "source",
                                           "preprocessor_defines",
                                           "default_params",
                                           "texture_unit",
                                           "filtering",
                                           "set"};

int CountAttributes(const std::string& line) {
    int count = 0;
    std::istringstream words(line);
    for (std::string word; words >> word;) count += static_cast<int>(attributeWords.count(word));
    return count;
}

/// The lines of a script that hold more than one thing.
std::vector<std::string> CrowdedLines(std::istream& script) {
    std::vector<std::string> crowded;
    for (std::string line; std::getline(script, line);) {
        const std::string code = WithoutComment(line);
        const bool brace = code.find_first_of("{}") != std::string::npos;
        if ((brace && code.size() > 1) || CountAttributes(code) > 1) crowded.push_back(code);
    }
    return crowded;
}

}  // namespace

TEST(ResourcePackage, HoldsTheFilesOfTheTwoFoldersAndNothingElse) {
    ASSERT_FALSE(PackedEntries().empty()) << VRN_RESOURCE_PACKAGE;
    EXPECT_EQ(PackedEntries(), SourceEntries());
}

TEST(ResourcePackage, HasNoFoldersBelowTheTwoLocations) {
    for (const std::string& entry : PackedEntries()) {
        EXPECT_TRUE(entry.starts_with("material/") || entry.starts_with("program/")) << entry;
        EXPECT_EQ(std::ranges::count(entry, '/'), 1) << entry;
    }
}

TEST(ResourceScripts, HaveOneAttributeALine) {
    for (const std::string& entry : SourceEntries()) {
        const fs::path file = fs::path(VRN_RESOURCE_SOURCES) / entry;
        if (!IsScript(file)) continue;
        std::ifstream script(file);
        ASSERT_TRUE(script) << file;
        EXPECT_THAT(CrowdedLines(script), ::testing::IsEmpty()) << file;
    }
}

TEST(ResourceScripts, TwoAttributesOnALineAreNoticed) {
    std::istringstream script(
        "pass { cull_hardware none }\ncull_hardware none depth_write off\n{\n");
    EXPECT_EQ(CrowdedLines(script).size(), 2u);
}

}  // namespace vrn::test
