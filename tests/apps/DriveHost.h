#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {

/// How far apart two places are.
[[nodiscard]] inline double DistanceOf(const nlohmann::json& a, const nlohmann::json& b) {
    double sum = 0;
    for (std::size_t i = 0; i < 3; ++i) sum += std::pow(a[i].get<double>() - b[i].get<double>(), 2);
    return std::sqrt(sum);
}

/// How many pixels look different.
[[nodiscard]] inline int Changed(const headless::Picture& a, const headless::Picture& b) {
    int changed = 0;
    for (int y = 0; y < a.getHeight(); ++y)
        for (int x = 0; x < a.getWidth(); ++x) changed += Difference(a.at(x, y), b.at(x, y)) > 30;
    return changed;
}

/// A box from the origin to (100, 100, 100), seen from the front, right and above.
class DriveHost : public VrnviewTest {
protected:
    DriveHost() { WriteBinaryStl(path("box.stl"), BoxTriangles({0, 0, 0}, {100, 100, 100})); }

    [[nodiscard]] ProcessResult run(const std::string& script,
                                    const std::vector<std::string>& files = {"box.stl"},
                                    const std::vector<std::string>& more = {}) const {
        WriteBytes(path("script.jsonl"), script);
        std::vector<std::string> arguments{"drive"};
        for (const std::string& file : files) arguments.push_back(path(file));
        for (const char* word : {"--size", "800x600", "--camera", "300,-400,300,50,50,50"})
            arguments.emplace_back(word);
        for (const std::string& word :
             {std::string("--script"), path("script.jsonl"), std::string("-o"), path("out")})
            arguments.push_back(word);
        arguments.insert(arguments.end(), more.begin(), more.end());
        return vrnview(arguments);
    }
    [[nodiscard]] std::vector<nlohmann::json> play(
        const std::string& script, const std::vector<std::string>& files = {"box.stl"},
        const std::vector<std::string>& more = {}) const {
        const ProcessResult result = run(script, files, more);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        std::vector<nlohmann::json> answers;
        std::istringstream in(result.out);
        for (std::string line; std::getline(in, line);)
            answers.push_back(nlohmann::json::parse(line));
        return answers;
    }
    [[nodiscard]] headless::Picture picture(const std::string& name) const {
        return headless::Picture::loadPng(path("out/" + name + ".png"));
    }
};

}  // namespace vrn::test
