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

struct Property {
    PackedNumber value;
    std::optional<PackedNumber> listCount;  ///< a list: this, then as many values
    int axis = -1;                          ///< 0, 1, 2 for a plain x, y, z
};

struct Element {
    std::string name;
    std::uint64_t count = 0;
    std::vector<Property> properties;
};

enum class Form { Text, LittleEndian, BigEndian };

struct Header {
    Form form = Form::Text;
    std::vector<Element> elements;
};

PackedNumber TypeOf(std::string_view word) {
    using enum PackedNumber::Kind;
    if (word == "char" || word == "int8") return {Signed, 1};
    if (word == "uchar" || word == "uint8") return {Unsigned, 1};
    if (word == "short" || word == "int16") return {Signed, 2};
    if (word == "ushort" || word == "uint16") return {Unsigned, 2};
    if (word == "int" || word == "int32") return {Signed, 4};
    if (word == "uint" || word == "uint32") return {Unsigned, 4};
    if (word == "float" || word == "float32") return {Real, 4};
    if (word == "double" || word == "float64") return {Real, 8};
    throw std::runtime_error(std::format("the header has a property of unknown type '{}'", word));
}

Form FormOf(std::string_view word) {
    if (word == "ascii") return Form::Text;
    if (word == "binary_little_endian") return Form::LittleEndian;
    if (word == "binary_big_endian") return Form::BigEndian;
    throw std::runtime_error(std::format("the header has the unknown format '{}'", word));
}

Property PropertyOf(Words words) {
    Property property;
    const std::string_view type = words.next();
    if (type == "list") {
        property.listCount = TypeOf(words.next());
        property.value = TypeOf(words.next());
        return property;
    }
    property.value = TypeOf(type);
    const std::string_view name = words.next();
    if (name == "x") property.axis = 0;
    if (name == "y") property.axis = 1;
    if (name == "z") property.axis = 2;
    return property;
}

Element ElementOf(Words words) {
    Element element;
    element.name = words.next();
    const std::optional<std::uint64_t> count = CountOf(words.next());
    if (!count)
        throw std::runtime_error(
            std::format("the header has no proper count for '{}'", element.name));
    element.count = *count;
    return element;
}

/// Takes the header's lines from `words`, "end_header" included.
Header HeaderOf(Words& words) {
    if (words.line() != "ply") throw std::runtime_error("not a PLY file");
    Header header;
    bool hasFormat = false;
    while (!words.atEnd()) {
        Words line(words.line());
        const std::string_view keyword = line.next();
        if (keyword == "end_header") {
            if (!hasFormat) throw std::runtime_error("the header names no format");
            return header;
        }
        if (keyword == "format") {
            header.form = FormOf(line.next());
            hasFormat = true;
        } else if (keyword == "element") {
            header.elements.push_back(ElementOf(line));
        } else if (keyword == "property") {
            if (header.elements.empty())
                throw std::runtime_error("the header has a property without an element");
            header.elements.back().properties.push_back(PropertyOf(line));
        } else if (keyword != "comment" && keyword != "obj_info" && !keyword.empty()) {
            throw std::runtime_error("the header has an unknown line");
        }
    }
    throw std::runtime_error("the header has no end");
}

[[noreturn]] void EndsEarly() { throw std::runtime_error("the file ends too early"); }

/// The values behind the header, in order, out of a text.
class TextValues {
public:
    explicit TextValues(std::string_view body) : words(body) {}

    double next(const PackedNumber&) {
        const std::string_view word = words.next();
        if (word.empty()) EndsEarly();
        const std::optional<double> value = NumberOf(word);
        if (!value) throw std::runtime_error("the file has a word where a number belongs");
        return *value;
    }
    void skip(const PackedNumber& type, double count) {
        for (double i = 0; i < count; ++i) (void)next(type);
    }
    /// At least this many bytes stand for a value: a digit and a blank, but for the last one.
    [[nodiscard]] std::uint64_t room(const PackedNumber&) const {
        return words.remaining().size() / 2 + 1;
    }

private:
    Words words;
};

/// The same out of bytes.
class BinaryValues {
public:
    BinaryValues(std::string_view body, std::endian byteOrder) : rest(body), order(byteOrder) {}

    double next(const PackedNumber& type) {
        if (rest.size() < type.size) EndsEarly();
        const double value = type.read(rest.data(), order);
        rest.remove_prefix(type.size);
        return value;
    }
    void skip(const PackedNumber& type, double count) {
        if (count > static_cast<double>(rest.size() / type.size)) EndsEarly();
        rest.remove_prefix(static_cast<std::size_t>(count) * type.size);
    }
    [[nodiscard]] std::uint64_t room(const PackedNumber& type) const {
        return rest.size() / type.size;
    }

private:
    std::string_view rest;
    std::endian order;
};

template <class Values>
void SkipList(Values& values, const Property& list) {
    const double count = values.next(*list.listCount);
    // Negated, so that NaN does not pass.
    if (!(count >= 0 && count <= 4294967295.0))
        throw std::runtime_error("the file has a list of a negative or broken length");
    values.skip(list.value, count);
}

template <class Values>
void ReadElement(Values& values, const Element& element, CloudPoints* points) {
    if (element.properties.empty()) return;  // its count stands for no bytes at all
    const Property& first = element.properties.front();
    const std::uint64_t room = values.room(first.listCount.value_or(first.value));
    if (element.count > room) EndsEarly();
    if (points) points->points.reserve(element.count);
    for (std::uint64_t i = 0; i < element.count; ++i) {
        std::array<double, 3> xyz{};
        for (const Property& property : element.properties) {
            if (property.listCount) {
                SkipList(values, property);
                continue;
            }
            const double value = values.next(property.value);
            if (property.axis >= 0) xyz[static_cast<std::size_t>(property.axis)] = value;
        }
        if (points) points->add({xyz[0], xyz[1], xyz[2]});
    }
}

template <class Values>
CloudPoints ReadElements(Values values, const Header& header) {
    CloudPoints points;
    for (const Element& element : header.elements)
        ReadElement(values, element, element.name == "vertex" ? &points : nullptr);
    return points;
}

void RequireVertices(const Header& header) {
    const auto isVertex = [](const Element& element) { return element.name == "vertex"; };
    const auto vertex = std::ranges::find_if(header.elements, isVertex);
    if (vertex == header.elements.end()) throw std::runtime_error("the file has no vertices");
    if (std::ranges::count_if(header.elements, isVertex) > 1)
        throw std::runtime_error("the header names vertices twice");
    for (const int axis : {0, 1, 2})
        if (std::ranges::count(vertex->properties, axis, &Property::axis) != 1)
            throw std::runtime_error("the vertices have no x, y and z");
}

}  // namespace

CloudPoints ReadPly(std::string_view bytes) {
    Words words(bytes);
    const Header header = HeaderOf(words);
    RequireVertices(header);
    const std::string_view body = words.remaining();
    CloudPoints points = header.form == Form::Text
                             ? ReadElements(TextValues(body), header)
                             : ReadElements(BinaryValues(body, header.form == Form::LittleEndian
                                                                   ? std::endian::little
                                                                   : std::endian::big),
                                            header);
    if (points.points.empty()) throw std::runtime_error("the file holds no points");
    return points;
}

}  // namespace vrn::host
