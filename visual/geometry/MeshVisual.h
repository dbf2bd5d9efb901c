#pragma once

#include <cstdint>
#include <string>

#include "visual/geometry/FacetVisual.h"

namespace vrn::visual {

/// Shows one registered mesh: a built-in shape, a mesh of the registry, or an STL file.
///
/// Colours are a parameter of the visual and not of the mesh, so visuals that share a mesh keep
/// separate colours. Thread: render.
class VRN_VISUAL_API MeshVisual : public FacetVisual {
public:
    /// A free-standing mesh visual under `parent`, named `name` followed by its transient id.
    MeshVisual(const std::string& name, Visual* parent);
    /// The same with an id of its own and exactly that name, which must be free.
    MeshVisual(std::uint32_t idIn, const std::string& name, Visual* parent);
    /// For a model body.
    MeshVisual(Visual* parent, sdf::SdfNode* modelNode);
    ~MeshVisual() override;

    /// An STL body of the model: geometry URI, colour, material and "detectable" are read from it,
    /// absent ones being detectable and the material "Body"; entered in the registry and in the
    /// selection. Throws std::invalid_argument for null, std::bad_cast for an object that is no
    /// body, std::bad_any_cast for a value of the wrong type, what attachMesh throws for the URI
    /// and what Hex2RGB throws for the colour; then nothing is left.
    static MeshVisual* Build(Visual* parent, sdf::SdfNode* modelNode);
    /// The built-in arrow at `position` along `direction` (need not be of unit length), in the
    /// frame of `parent`; scaled by the scene's arrow size level. It is a MarkVisual: no body of
    /// `parent`. Throws std::overflow_error for a zero direction, and then leaves the tree as it
    /// was.
    static MeshVisual* BuildArrow(Visual* parent, const rob::PosTemplate<float>& position,
                                  const rob::DirTemplate<float>& direction);

    /// Shows the mesh `name`: a built-in one, a registered one, or else an STL file to be read.
    /// What was shown before goes. Throws "Not stl file" and the reader's other errors, and keeps
    /// showing what it did.
    void attachMesh(const std::string& name);
    /// Shows no mesh any more; does nothing without one.
    void clearMesh();

    void setColor(const rob::ColorTemplate<float>& color, float alpha);
    /// As Hex2RGB reads it, opaque; throws what that throws. Neither does anything without a mesh.
    void setColor(const std::string& hexColor);

    /// With the mesh, the colour and the pose of this one, in the look of previews.
    std::optional<Visual*> copy(Visual* parent) override;
    std::uint32_t getBodiesNum() override;
    std::uint32_t getFacesNum() override;
    std::uint32_t getTrianglesNum() override;
    std::uint32_t getVerticesNum() override;
    void resetColor() override;
    void setBodyColor(const rob::ColorTemplate<float>& color, float alpha) override;
    [[nodiscard]] Ogre::Entity* getEntity() const override;
    [[nodiscard]] std::string getMeshName() const override;

private:
    void showMesh(const std::string& name);

    std::string meshName;
    Ogre::Entity* entity = nullptr;
};

}  // namespace vrn::visual
