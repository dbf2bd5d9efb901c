#pragma once

#include <string>

#include "suite/rob/VectorTypes.h"
#include "visual/geometry/BodyVisual.h"

namespace Ogre {
class Entity;
}

namespace vrn::visual {

/// A body drawn as one entity. Selected, it is drawn in render queue group 51, after the rest
/// in 50. Thread: render.
class VRN_VISUAL_API FacetVisual : public BodyVisual {
public:
    using BodyVisual::BodyVisual;

    void useNamedMaterial(const std::string& name);
    void setSelected() override;
    void clearHighlightOrSelect() override;

    /// Back to the colour that the model gives the body.
    virtual void resetColor() = 0;
    /// Components 0 to 1; `alpha` is 1 for opaque.
    virtual void setBodyColor(const rob::ColorTemplate<float>& color, float alpha) = 0;
    /// Null when there is nothing to show.
    [[nodiscard]] virtual Ogre::Entity* getEntity() const = 0;
    [[nodiscard]] virtual std::string getMeshName() const = 0;

    static constexpr unsigned char solidQueueGroup = 50;
    static constexpr unsigned char selectedSolidQueueGroup = 51;
};

}  // namespace vrn::visual
