#include <algorithm>
#include <array>
#include <format>
#include <optional>
#include <stdexcept>
#include <utility>

#include "apps/vrnview/readers/CloudPoints.h"
#include "apps/vrnview/readers/Words.h"

namespace vrn::host {

namespace {

constexpr std::string_view separators = " \t,;\v\f\r";

/// The first words of a line, `count` of them.
struct LineStart {
    std::array<std::string_view, 3> words;
    std::size_t count = 0;
};

LineStart StartOf(std::string_view line) {
    LineStart start;
    while (start.count < 3) {
        line.remove_prefix(std::min(line.find_first_not_of(separators), line.size()));
        if (line.empty()) break;
        const std::string_view word = line.substr(0, line.find_first_of(separators));
        line.remove_prefix(word.size());
        start.words[start.count++] = word;
    }
    return start;
}

bool IsComment(const LineStart& line) {
    return line.count == 0 || line.words[0].starts_with('#') || line.words[0].starts_with("//");
}

bool IsHeading(const LineStart& line) {
    return line.count == 3 && (line.words[0] == "x" || line.words[0] == "X");
}

std::optional<rob::PosTemplate<double>> PointOf(const LineStart& line) {
    if (line.count < 3) return std::nullopt;
    const auto x = NumberOf(line.words[0]), y = NumberOf(line.words[1]),
               z = NumberOf(line.words[2]);
    if (!x || !y || !z) return std::nullopt;
    return rob::PosTemplate<double>{*x, *y, *z};
}

}  // namespace

CloudPoints ReadPointText(std::string_view text) {
    Words lines(text);
    CloudPoints points;
    std::optional<std::uint64_t> promised;
    bool isFirst = true;
    for (std::uint64_t number = 1; !lines.atEnd(); ++number) {
        const LineStart line = StartOf(lines.line());
        if (IsComment(line)) continue;
        const bool isOpening = std::exchange(isFirst, false);
        if (isOpening && IsHeading(line)) continue;
        if (isOpening && line.count == 1 && (promised = CountOf(line.words[0]))) continue;
        const std::optional<rob::PosTemplate<double>> point = PointOf(line);
        if (!point) throw std::runtime_error(std::format("line {} is not three numbers", number));
        points.add(*point);
    }
    const std::uint64_t found = points.points.size() + points.holes;
    if (promised && *promised != found)
        throw std::runtime_error(
            std::format("the file names {} points and holds {}", *promised, found));
    if (points.points.empty()) throw std::runtime_error("the file holds no points");
    return points;
}

}  // namespace vrn::host
