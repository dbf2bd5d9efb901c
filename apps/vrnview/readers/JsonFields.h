#pragma once

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vrnview/readers/Poses.h"

namespace vrn::host {

/// Access to one object of a JSON text that says what is wrong with it: all throw
/// std::runtime_error with the key and what was expected. Thread: pure.
class JsonFields {
public:
    /// Throws if `source` is no object. It must outlive this.
    explicit JsonFields(const nlohmann::json& source);

    [[nodiscard]] bool has(const char* key) const { return json.contains(key); }
    /// Must be there.
    [[nodiscard]] std::string text(const char* key) const;
    [[nodiscard]] double number(const char* key) const;
    /// May be absent.
    [[nodiscard]] std::string textOr(const char* key, const std::string& absent) const;
    [[nodiscard]] double numberOr(const char* key, double absent) const;
    [[nodiscard]] bool flagOr(const char* key, bool absent) const;
    [[nodiscard]] std::optional<std::string> colour(const char* key) const;  ///< "#RRGGBB"
    [[nodiscard]] double unitMm(const char* key) const;  ///< "mm" (also absent), "cm", "m" or "in"
    /// {"position": [x, y, z], "rpy": [degrees] or "quaternion": [w, x, y, z]}; identity when
    /// absent.
    [[nodiscard]] Pose pose(const char* key) const;
    /// Of three numbers of at most maxLength.
    [[nodiscard]] rob::PosTemplate<double> position(const char* key) const;
    /// A list of lists of two numbers of at most maxLength.
    [[nodiscard]] std::vector<std::array<double, 2>> pairs(const char* key) const;
    /// An array; an empty one when absent.
    [[nodiscard]] const nlohmann::json& list(const char* key) const;
    /// An object; an empty one when absent.
    [[nodiscard]] const nlohmann::json& map(const char* key) const;
    /// The first key that is not one of `known`; empty if all are.
    [[nodiscard]] std::string firstUnknown(std::initializer_list<std::string_view> known) const;

    static constexpr double maxLength = 1e9;  ///< millimetres: single precision ends long before

private:
    template <std::size_t count>
    [[nodiscard]] std::array<double, count> numbers(const char* key) const;

    const nlohmann::json& json;
};

}  // namespace vrn::host
