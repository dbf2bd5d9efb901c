#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "suite/geom/ColorInfo.h"
#include "suite/SuiteApi.h"

namespace vrn::sdf {
class Element;
}

namespace vrn::geometry {

/// The stored colours of bodies, kept in the body's element.
///
/// A colour is a hash sign and six hexadecimal digits. A body without a stored colour has
/// defaultBodyColor; an id without a model object has unknownBodyColor, faces too, which is what
/// shapes without a body are shown in.
/// Thread: any.
class VRN_SUITE_API BodyColorTool {
public:
    static constexpr std::string_view defaultBodyColor = "#BFC5CC";
    static constexpr std::string_view unknownBodyColor = "#ED1C24";

    [[nodiscard]] static ColorInfo GetColorInfo(std::uint32_t bodyId);
    [[nodiscard]] static std::string GetBodyColor(std::uint32_t bodyId);
    /// The same from the body's element; null counts as unknown.
    [[nodiscard]] static std::string GetBodyColor(std::shared_ptr<sdf::Element> body);
    /// The colour of the face, counted from 1; the body's where the face has none of its own.
    [[nodiscard]] static std::string GetFaceColor(std::uint32_t bodyId, std::uint32_t faceIndex);

    /// Stores a colour. Throws std::invalid_argument if `color` is not a hash sign and six
    /// hexadecimal digits, or `body` is null.
    static void SetBodyColor(const std::shared_ptr<sdf::Element>& body, const std::string& color);
    static void SetFaceColor(const std::shared_ptr<sdf::Element>& body, std::uint32_t faceIndex,
                             const std::string& color);
    /// Forgets the colours of all faces.
    static void ClearFaceColors(const std::shared_ptr<sdf::Element>& body);
};

}  // namespace vrn::geometry
