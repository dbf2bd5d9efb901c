#include <algorithm>
#include <array>
#include <bit>
#include <format>
#include <optional>
#include <stdexcept>
#include <string>

#include "apps/vrnview/readers/CloudPoints.h"
#include "apps/vrnview/readers/PackedNumber.h"
#include "apps/vrnview/readers/Words.h"

namespace vrn::host {

namespace {

struct Field {
    std::string name;
    PackedNumber value;
    std::uint64_t count = 1;   ///< values a point
    std::uint64_t offset = 0;  ///< bytes a point before it
    std::uint64_t column = 0;  ///< values a point before it
};

struct Header {
    std::vector<Field> fields;
    std::uint64_t points = 0;
    std::uint64_t stride = 0;   ///< bytes a point
    std::uint64_t columns = 0;  ///< values a point
    std::string data;
};

/// Far above what any sensor writes, and far below what would overflow when multiplied.
constexpr std::uint64_t maxFields = 1024, maxCount = 1 << 20;

/// The header as it is written: the words behind each keyword.
struct HeaderLines {
    std::vector<std::string> fields, sizes, types, counts;
    std::optional<std::uint64_t> width, height, points;
    std::string data;
};

std::vector<std::string> AllOf(Words line) {
    std::vector<std::string> words;
    for (std::string_view word = line.next(); !word.empty(); word = line.next())
        words.emplace_back(word);
    if (words.size() > maxFields) throw std::runtime_error("the header has too many fields");
    return words;
}

std::optional<std::uint64_t> RequireCount(Words line, std::string_view keyword) {
    const std::optional<std::uint64_t> count = CountOf(line.next());
    if (!count) throw std::runtime_error(std::format("the header has no proper {}", keyword));
    return count;
}

/// Takes the header's lines, the one that starts with "DATA" included.
HeaderLines LinesOf(Words& words) {
    HeaderLines lines;
    while (!words.atEnd()) {
        Words line(words.line());
        const std::string_view keyword = line.next();
        if (keyword == "FIELDS" || keyword == "COLUMNS") lines.fields = AllOf(line);
        if (keyword == "SIZE") lines.sizes = AllOf(line);
        if (keyword == "TYPE") lines.types = AllOf(line);
        if (keyword == "COUNT") lines.counts = AllOf(line);
        if (keyword == "WIDTH") lines.width = RequireCount(line, keyword);
        if (keyword == "HEIGHT") lines.height = RequireCount(line, keyword);
        if (keyword == "POINTS") lines.points = RequireCount(line, keyword);
        if (keyword != "DATA") continue;
        lines.data = line.next();
        return lines;
    }
    throw std::runtime_error(lines.fields.empty() ? "not a PCD file" : "the header has no end");
}

PackedNumber TypeOf(std::string_view type, std::string_view size) {
    const std::optional<std::uint64_t> bytes = CountOf(size);
    const bool known = bytes && (*bytes == 1 || *bytes == 2 || *bytes == 4 || *bytes == 8);
    if (known && type == "I")
        return {PackedNumber::Kind::Signed, static_cast<std::uint8_t>(*bytes)};
    if (known && type == "U")
        return {PackedNumber::Kind::Unsigned, static_cast<std::uint8_t>(*bytes)};
    if (known && *bytes >= 4 && type == "F")
        return {PackedNumber::Kind::Real, static_cast<std::uint8_t>(*bytes)};
    throw std::runtime_error(
        std::format("the header has a field of unknown type '{}' of size '{}'", type, size));
}

void AddFields(const HeaderLines& lines, Header& header) {
    const std::size_t fields = lines.fields.size();
    if (fields == 0 || lines.sizes.size() != fields || lines.types.size() != fields ||
        (!lines.counts.empty() && lines.counts.size() != fields))
        throw std::runtime_error("the header's FIELDS, SIZE, TYPE and COUNT do not agree");
    for (std::size_t i = 0; i < fields; ++i) {
        Field field{lines.fields[i], TypeOf(lines.types[i], lines.sizes[i])};
        if (!lines.counts.empty()) field.count = CountOf(lines.counts[i]).value_or(0);
        if (field.count < 1 || field.count > maxCount)
            throw std::runtime_error("the header has a field of a broken COUNT");
        field.offset = header.stride;
        field.column = header.columns;
        header.stride += field.count * field.value.size;
        header.columns += field.count;
        header.fields.push_back(std::move(field));
    }
}

std::uint64_t PointsOf(const HeaderLines& lines) {
    if (!lines.width) {
        if (lines.points) return *lines.points;
        throw std::runtime_error("the header has no number of points");
    }
    const std::uint64_t height = lines.height.value_or(1);
    std::uint64_t points = 0;
    if (__builtin_mul_overflow(*lines.width, height, &points) ||
        (lines.points && points != *lines.points))
        throw std::runtime_error("the header's WIDTH, HEIGHT and POINTS do not agree");
    return points;
}

Header HeaderOf(Words& words) {
    const HeaderLines lines = LinesOf(words);
    Header header;
    AddFields(lines, header);
    header.points = PointsOf(lines);
    header.data = lines.data;
    return header;
}

using Axes = std::array<const Field*, 3>;

Axes AxesOf(const Header& header) {
    Axes axes{};
    constexpr std::array<std::string_view, 3> names{"x", "y", "z"};
    for (std::size_t i = 0; i < 3; ++i) {
        const auto field = std::ranges::find(header.fields, names[i], &Field::name);
        if (field == header.fields.end()) throw std::runtime_error("the points have no x, y and z");
        axes[i] = &*field;
    }
    return axes;
}

[[noreturn]] void EndsEarly() { throw std::runtime_error("the file ends too early"); }

CloudPoints FromText(const Header& header, const Axes& axes, std::string_view body) {
    Words words(body);
    CloudPoints points;
    // A value is two bytes at least, but for the last one.
    if (header.points > body.size() / 2 + 1) EndsEarly();
    points.points.reserve(header.points);
    for (std::uint64_t i = 0; i < header.points; ++i) {
        std::array<double, 3> xyz{};
        for (std::uint64_t column = 0; column < header.columns; ++column) {
            const std::string_view word = words.next();
            if (word.empty()) EndsEarly();
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (axes[axis]->column != column) continue;
                const std::optional<double> value = NumberOf(word);
                if (!value) throw std::runtime_error("the file has a word where a number belongs");
                xyz[axis] = *value;
            }
        }
        points.add({xyz[0], xyz[1], xyz[2]});
    }
    return points;
}

/// Where the values of one field lie: at `start`, and then `step` apart.
struct Layout {
    std::array<std::uint64_t, 3> start;
    std::array<std::uint64_t, 3> step;
};

CloudPoints FromBytes(const Header& header, const Axes& axes, const char* bytes,
                      const Layout& layout) {
    CloudPoints points;
    points.points.reserve(header.points);
    for (std::uint64_t i = 0; i < header.points; ++i) {
        std::array<double, 3> xyz{};
        for (std::size_t axis = 0; axis < 3; ++axis)
            xyz[axis] = axes[axis]->value.read(bytes + layout.start[axis] + i * layout.step[axis],
                                               std::endian::little);
        points.add({xyz[0], xyz[1], xyz[2]});
    }
    return points;
}

CloudPoints FromBinary(const Header& header, const Axes& axes, std::string_view body) {
    if (header.points > body.size() / header.stride) EndsEarly();
    Layout layout{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        layout.start[axis] = axes[axis]->offset;
        layout.step[axis] = header.stride;
    }
    return FromBytes(header, axes, body.data(), layout);
}

/// Two sizes, then the packed data; unpacked, all values of the first field come first, then all of
/// the second.
CloudPoints FromCompressed(const Header& header, const Axes& axes, std::string_view body) {
    constexpr PackedNumber size{PackedNumber::Kind::Unsigned, 4};
    if (body.size() < 8) EndsEarly();
    const auto packed = static_cast<std::uint64_t>(size.read(body.data(), std::endian::little));
    const auto unpacked =
        static_cast<std::uint64_t>(size.read(body.data() + 4, std::endian::little));
    body.remove_prefix(8);
    if (packed > body.size()) EndsEarly();
    // The sizes have 32 bits, so a count that agrees with them cannot overflow.
    if (header.points > unpacked / header.stride || header.points * header.stride != unpacked)
        throw std::runtime_error("the size of the compressed points is not what the header says");
    const std::vector<char> bytes = UnpackLzf(body.substr(0, packed), unpacked);
    Layout layout{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        layout.start[axis] = axes[axis]->offset * header.points;
        layout.step[axis] = axes[axis]->value.size * axes[axis]->count;
    }
    return FromBytes(header, axes, bytes.data(), layout);
}

CloudPoints BodyOf(const Header& header, std::string_view body) {
    const Axes axes = AxesOf(header);
    if (header.data == "ascii") return FromText(header, axes, body);
    if (header.data == "binary") return FromBinary(header, axes, body);
    if (header.data == "binary_compressed") return FromCompressed(header, axes, body);
    throw std::runtime_error(std::format("the header has the unknown DATA '{}'", header.data));
}

}  // namespace

CloudPoints ReadPcd(std::string_view bytes) {
    Words words(bytes);
    const Header header = HeaderOf(words);
    CloudPoints points = BodyOf(header, words.remaining());
    if (points.points.empty()) throw std::runtime_error("the file holds no points");
    return points;
}

}  // namespace vrn::host
