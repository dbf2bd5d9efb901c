#include "apps/vrnview/AnimatedPng.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/vrnview/TempFolder.h"
#include "tests/apps/TestFiles.h"

namespace vrn::host {
namespace {

using headless::Picture;

struct Chunk {
    std::string type;
    std::string data;
};

unsigned Number(const std::string& bytes, std::size_t at, int size = 4) {
    unsigned value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes.at(at + static_cast<std::size_t>(i)));
    return value;
}

std::vector<Chunk> ChunksOf(const std::filesystem::path& file) {
    const std::string bytes = test::ReadBytes(file);
    std::vector<Chunk> chunks;
    for (std::size_t at = 8; at < bytes.size();) {
        const std::size_t length = Number(bytes, at);
        chunks.push_back({bytes.substr(at + 4, 4), bytes.substr(at + 8, length)});
        at += length + 12;
    }
    return chunks;
}

class AnimatedPngTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path path(const char* name) const {
        return folder.getPath() / name;
    }
    /// A blue picture with one red pixel.
    static Picture dotAt(int x, int y) {
        Picture picture(40, 30, {10, 20, 200, 255});
        picture.set(x, y, {250, 0, 0, 255});
        return picture;
    }
    TempFolder folder;
};

TEST_F(AnimatedPngTest, ReaderOfPicturesSeesTheFirst) {
    AnimatedPng film(path("film.png"), 40);
    film.add(dotAt(3, 4));
    film.add(dotAt(30, 20));
    film.finish();
    const Picture first = Picture::loadPng(path("film.png"));
    EXPECT_EQ(first.getPixels(), dotAt(3, 4).getPixels());
}

TEST_F(AnimatedPngTest, EachFrameIsWhereItDiffers) {
    AnimatedPng film(path("film.png"), 40);
    film.add(dotAt(3, 4));
    film.add(dotAt(30, 20));
    film.add(dotAt(30, 20));
    film.finish();
    const auto chunks = ChunksOf(path("film.png"));
    std::vector<std::string> types;
    for (const Chunk& chunk : chunks) types.push_back(chunk.type);
    EXPECT_EQ(types, (std::vector<std::string>{"IHDR", "acTL", "fcTL", "IDAT", "fcTL", "fdAT",
                                               "fcTL", "fdAT", "IEND"}));
    EXPECT_EQ(Number(chunks[1].data, 0), 3u);  // frames
    EXPECT_EQ(Number(chunks[1].data, 4), 0u);  // over and over
    const std::string& second = chunks[4].data;
    EXPECT_EQ(Number(second, 4), 28u);  // width
    EXPECT_EQ(Number(second, 8), 17u);  // height
    EXPECT_EQ(Number(second, 12), 3u);  // left
    EXPECT_EQ(Number(second, 16), 4u);  // top
    EXPECT_EQ(Number(second, 20, 2), 40u);
    EXPECT_EQ(Number(second, 22, 2), 1000u);
    // Nothing changed: a pixel is as little as a frame can be.
    EXPECT_EQ(Number(chunks[6].data, 4), 1u);
    EXPECT_EQ(Number(chunks[6].data, 8), 1u);
    // The numbered chunks count on.
    unsigned next = 0;
    for (const Chunk& chunk : chunks) {
        if (chunk.type != "fcTL" && chunk.type != "fdAT") continue;
        EXPECT_EQ(Number(chunk.data, 0), next);
        ++next;
    }
}

TEST_F(AnimatedPngTest, NothingStandsThereBeforeItIsFinished) {
    {
        AnimatedPng film(path("film.png"), 40);
        film.add(dotAt(1, 1));
        EXPECT_FALSE(std::filesystem::exists(path("film.png")));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.getPath()));
}

TEST_F(AnimatedPngTest, WhatCannotBeIsRefused) {
    EXPECT_THROW(AnimatedPng(path("no/film.png"), 40), std::runtime_error);
    AnimatedPng film(path("film.png"), 40);
    EXPECT_THROW(film.finish(), std::runtime_error);
    film.add(dotAt(1, 1));
    EXPECT_THROW(film.add(Picture(41, 30)), std::invalid_argument);
    film.finish();
    EXPECT_EQ(ChunksOf(path("film.png")).size(), 5u);
}

}  // namespace
}  // namespace vrn::host
