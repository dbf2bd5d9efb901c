#include "suite/geom/BodyColorTool.h"

#include "suite/sdf/Element.h"
#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>

namespace vrn::geometry {

namespace {

using ElementPtr = std::shared_ptr<sdf::Element>;
using FaceColors = std::unordered_map<std::uint32_t, std::string>;

constexpr std::string_view bodyColorPath = "visual/color";
constexpr std::string_view faceColorsPath = "visual/face_colors";

/// Makes reading and rewriting a body's face colours one step.
std::mutex faceColorMutex;

ElementPtr BodyElement(std::uint32_t bodyId) {
    const sdf::SdfNode* node = sdf::SdfManager::inst()->find(bodyId);
    return node ? node->element : nullptr;
}

/// The value at "visual/<key>", without creating what is absent.
template <class T>
T StoredOr(const sdf::Element& body, std::string_view path, T fallback) {
    const ElementPtr visual = body.get(path.substr(0, path.find('/')));
    const ElementPtr stored = visual ? visual->get(path.substr(path.find('/') + 1)) : nullptr;
    return stored && stored->getValue().has_value() ? stored->as<T>() : std::move(fallback);
}

void RequireColor(const std::string& color) {
    const bool valid =
        color.size() == 7 && color[0] == '#' &&
        std::all_of(color.begin() + 1, color.end(), [](char c) {
            return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        });
    if (!valid)
        throw std::invalid_argument(
            "a colour must be a hash sign and six hexadecimal digits, got " + color);
}

void RequireBody(const ElementPtr& body) {
    if (!body) throw std::invalid_argument("a colour needs a body's element, got null");
}

std::string ColorOfFace(const ColorInfo& info, std::uint32_t faceIndex) {
    const auto it = info.faceColors.find(faceIndex);
    return it == info.faceColors.end() ? info.bodyColor : it->second;
}

}  // namespace

ColorInfo BodyColorTool::GetColorInfo(std::uint32_t bodyId) {
    const ElementPtr body = BodyElement(bodyId);
    if (!body) return {std::string(unknownBodyColor), {}};
    return {GetBodyColor(body), StoredOr<FaceColors>(*body, faceColorsPath, {})};
}

std::string BodyColorTool::GetBodyColor(std::uint32_t bodyId) {
    return GetBodyColor(BodyElement(bodyId));
}

std::string BodyColorTool::GetBodyColor(ElementPtr body) {
    if (!body) return std::string(unknownBodyColor);
    return StoredOr<std::string>(*body, bodyColorPath, std::string(defaultBodyColor));
}

std::string BodyColorTool::GetFaceColor(std::uint32_t bodyId, std::uint32_t faceIndex) {
    return ColorOfFace(GetColorInfo(bodyId), faceIndex);
}

void BodyColorTool::SetBodyColor(const ElementPtr& body, const std::string& color) {
    RequireBody(body);
    RequireColor(color);
    body->set(bodyColorPath, color);
}

void BodyColorTool::SetFaceColor(const ElementPtr& body, std::uint32_t faceIndex,
                                 const std::string& color) {
    RequireBody(body);
    RequireColor(color);
    const std::lock_guard lock(faceColorMutex);
    auto colors = StoredOr<FaceColors>(*body, faceColorsPath, {});
    colors[faceIndex] = color;
    body->set(faceColorsPath, std::move(colors));
}

void BodyColorTool::ClearFaceColors(const ElementPtr& body) {
    RequireBody(body);
    const std::lock_guard lock(faceColorMutex);
    body->set(faceColorsPath, FaceColors{});
}

}  // namespace vrn::geometry
