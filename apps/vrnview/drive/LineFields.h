#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vrnview/readers/Poses.h"
#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// A pixel of the picture from its upper left corner.
using Pixel = rob::Vec2Template<float>;
/// The farthest that is asked for: what lies so far outside of any picture is as good as farther.
inline constexpr double maxPixel = 1e6;

/// The keys of one line of a script, each to be asked for once. Every reader throws
/// std::runtime_error, naming the verb, the key and what is wanted, for a value that is missing or
/// of another kind. Thread: pure.
class LineFields {
public:
    /// `lineObject` must be an object and outlive this.
    LineFields(const nlohmann::json& lineObject, std::string verbOfLine);

    [[nodiscard]] bool has(const char* key) const { return object.contains(key); }

    /// Of at most maxPixel.
    [[nodiscard]] float number(const char* key);
    /// Above 0.
    [[nodiscard]] double length(const char* key);
    /// 0 or above.
    [[nodiscard]] double lengthOrNone(const char* key);
    /// From `least` to `most`; nothing when absent.
    [[nodiscard]] std::optional<float> numberIfAny(const char* key, float least, float most);
    /// The same, where it must be there.
    [[nodiscard]] float numberIn(const char* key, float least, float most);
    /// A whole one from 1.
    [[nodiscard]] std::uint32_t ordinal(const char* key);
    /// At least one whole number from 1.
    [[nodiscard]] std::vector<std::uint32_t> ordinals(const char* key);
    [[nodiscard]] bool flagOr(const char* key, bool absent);
    [[nodiscard]] std::string text(const char* key);
    /// One of `choices`, by its place there.
    [[nodiscard]] std::size_t choice(const char* key, const std::vector<std::string_view>& choices);
    [[nodiscard]] std::vector<std::string> texts(const char* key);
    /// The keys "x" and "y".
    [[nodiscard]] Pixel pixel();
    /// [[x, y], ...], exactly `count` of them.
    [[nodiscard]] std::vector<Pixel> pixels(const char* key, std::size_t count);
    /// [[x, y], ...], three at least.
    [[nodiscard]] std::vector<rob::PosTemplate<float>> corners(const char* key);
    /// [x, y, z] in millimetres.
    [[nodiscard]] rob::PosTemplate<double> position(const char* key);
    /// [[x, y, z], ...], `least` of them or more.
    [[nodiscard]] std::vector<rob::PosTemplate<double>> positions(const char* key,
                                                                  std::size_t least);
    /// {"position": [x, y, z], "rpy": [degrees] or "quaternion": [w, x, y, z]}, as in a station
    /// file; must be there.
    [[nodiscard]] Pose pose(const char* key);
    [[nodiscard]] Pose poseOr(const char* key, const Pose& absent);
    /// A list of one or more.
    [[nodiscard]] std::vector<Pose> poses(const char* key);
    /// [r, g, b], each from 0 to 1; nothing when absent.
    [[nodiscard]] std::optional<rob::ColorTemplate<float>> colourIfAny(const char* key);
    [[nodiscard]] rob::ColorTemplate<float> colour(const char* key);

    /// [x, y, z], not all 0; made unit length.
    [[nodiscard]] rob::DirTemplate<double> direction(const char* key);
    /// An object of the line, to be read and finished like the line; good as long as the line.
    [[nodiscard]] LineFields inner(const char* key);
    /// A list of one or more of these.
    [[nodiscard]] std::vector<LineFields> inners(const char* key);

    /// Throws for a key that nothing asked for: a misspelt one would go unnoticed.
    void finish() const;

private:
    [[noreturn]] void refuse(const char* key, std::string_view wanted) const;
    const nlohmann::json& at(const char* key, std::string_view wanted);
    const nlohmann::json& listAt(const char* key, std::string_view wanted);
    [[nodiscard]] float floatOf(const nlohmann::json& value, const char* key) const;
    [[nodiscard]] std::uint32_t ordinalOf(const nlohmann::json& value, const char* key,
                                          std::string_view wanted) const;
    [[nodiscard]] rob::PosTemplate<double> positionOf(const nlohmann::json& value, const char* key,
                                                      std::string_view wanted) const;
    [[nodiscard]] Pose poseOf(const nlohmann::json& value, const char* key) const;

    const nlohmann::json& object;
    std::string verb;
    std::set<std::string> used{"do"};
};

/// What a line may say under "do", and how the rest of the line is read.
template <class Action>
struct Verb {
    std::string_view name;
    Action (*read)(LineFields&);
};

}  // namespace vrn::host
