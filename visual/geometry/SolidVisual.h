#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

#include "mesh/FaceMap.h"
#include "visual/geometry/FacetVisual.h"

namespace vrn {
struct ColorInfo;
}

namespace vrn::layout {
class Body;
}

namespace vrn::visual {

/// One B-rep body, drawn as one entity from the triangulation that its shape brings along: a shape
/// that was never triangulated shows nothing.
///
/// A face is addressed by its number in the face map, from 1. Hidden faces have no triangles in the
/// mesh and cannot be picked; which faces are hidden is part of the mesh's name, so solids that
/// share geometry and hidden faces share one mesh, and with it the colours that it shows. Stored
/// colours are those of geometry::BodyColorTool.
///
/// A solid of the station reads shape and faces from its body, which must outlive it. OpenCASCADE's
/// exceptions, which are no std::exception, pass through. Thread: render.
class VRN_VISUAL_API SolidVisual : public FacetVisual {
public:
    /// Without picture yet; `name`, which is also the base name of the mesh, is followed by the
    /// visual's transient id in the tree.
    SolidVisual(const std::string& name, const TopoDS_Shape& solidShape, Visual* parent);
    /// The same with a name of its own, which the mesh then has too.
    SolidVisual(const TopoDS_Shape& solidShape, Visual* parent);
    /// For a body, which takes over the shape. The mesh is named by the body's geometry URI, or by
    /// the visual if that is empty, so that bodies without URI share nothing. Throws std::bad_cast
    /// for an object that is no body and std::bad_any_cast for a URI that is no text.
    SolidVisual(sdf::SdfNode* modelNode, const TopoDS_Shape& solidShape, Visual* parent);
    /// Gives up the mesh of the base name, unless this is a copy or shows nothing.
    ~SolidVisual() override;

    // Each builder enters the visual in the registry and never returns null. When a builder throws,
    // nothing is left in the tree.

    /// A shape to look at, red ("#ED1C24"), that has no other look than `material`, cannot be
    /// picked and has no wire frame.
    static SolidVisual* Build(Visual* parent, const TopoDS_Shape& solidShape,
                              const std::string& material);
    /// A shape with three looks and a wire frame that can be picked and takes no part in contact
    /// tests; red at first. Without triangles it has all of that and no picture.
    static SolidVisual* Build(Visual* parent, const TopoDS_Shape& solidShape,
                              const std::string& material, const std::string& highlighted,
                              const std::string& selected);
    /// A body of the station, in its stored colours; MaterialsOf tells its looks. Without triangles
    /// it is a visual in the registry and nothing more. Throws std::invalid_argument for null, and
    /// as IsDetectable, MaterialsOf, the constructor and MeshManager::loadShape do.
    static SolidVisual* Build(Visual* parent, sdf::SdfNode* modelNode,
                              const TopoDS_Shape& solidShape);

    /// The base name of the mesh.
    [[nodiscard]] std::string getMeshName() const override { return meshName; }
    /// The base name with "_" and the number of each hidden face behind it, in the order of hiding.
    [[nodiscard]] std::string getCurrentMeshName() const;
    [[nodiscard]] Ogre::Entity* getEntity() const override { return entity; }
    [[nodiscard]] TopoDS_Shape getShape() const;
    [[nodiscard]] const FaceMap& getFaceMap() const;
    /// Its number, whichever way the face is oriented; 0 for a face of another shape.
    [[nodiscard]] std::uint32_t getFaceIndex(const TopoDS_Face& face) const;
    /// Throws Standard_OutOfRange: "NCollection_IndexedMap::FindKey: negative index" below 0,
    /// "NCollection_IndexedMap::FindKey" for 0 and past the end. Null for an entry of the map that
    /// is no face.
    [[nodiscard]] TopoDS_Face getFace(int index) const;

    [[nodiscard]] bool isFaceVisible(unsigned long index) const;
    /// Shows or hides one face, in its stored colour, and rebuilds the picture, also if nothing
    /// changed. Throws NoTriangleMesh when the last face with triangles is hidden; the solid then
    /// shows nothing until a face is shown again.
    void setFaceVisible(unsigned long index, bool show);

    // Colours of one face, as shown; they store nothing. A hidden face is passed over. All throw as
    // MeshManager::SetFaceColor for a number past the faces.

    void setFaceColor(unsigned int index, const rob::ColorTemplate<float>& color);
    /// As Hex2RGB reads it; throws what that throws.
    void setFaceColor(unsigned int index, const std::string& hexColor);
    /// The stored colour of the face, not the one that is shown; the body's for a number without a
    /// face.
    [[nodiscard]] rob::ColorTemplate<float> getFaceColor(unsigned int index) const;
    /// Shows the stored colour with 0.2 added to each component, unclamped.
    void highLightFace(unsigned int index);
    /// Both show the stored colour.
    void clearHighLightFace(unsigned int index);
    void clearSelectedFace(unsigned int index);
    /// A face of another shape is passed over.
    void clearSelectedFace(const TopoDS_Face& face);

    /// Shows `color` on all vertices; the second argument has no effect, solids are opaque.
    void setBodyColor(const rob::ColorTemplate<float>& color, float unused) override;
    /// Shows the stored colours.
    void resetColor() override;

    /// As Visual::setVisible; showing the solid brings back all its hidden faces.
    void setVisible(bool show, bool cascade) override;
    /// Shows the mesh of that name in the normal look, and makes it the base name. Throws
    /// Ogre::FileNotFoundException for a name that Ogre does not know, and then changes nothing.
    void attachEntity(const std::string& newMeshName);
    /// Makes the picture anew for the faces that are visible now, in the normal look: a state layer
    /// shows again at the next refresh. Throws NoTriangleMesh if none has triangles, and what
    /// MeshManager::loadShape throws; the solid then shows nothing.
    void updateMesh();

    /// With the unhidden mesh and the pose of this one, in the look of previews. It shares the mesh
    /// and keeps no body.
    std::optional<Visual*> copy(Visual* parent) override;
    std::uint32_t getBodiesNum() override;
    std::uint32_t getFacesNum() override;
    std::uint32_t getTrianglesNum() override;
    std::uint32_t getVerticesNum() override;

protected:
    /// Makes the mesh in these colours and shows it; false for a shape without triangles, which
    /// then shows nothing.
    bool loadEntity(const ColorInfo& colors);

private:
    void showEntity(const std::string& entityName, const std::string& shownMesh);
    void destroyEntity();
    void updatePicking();

    Ogre::Entity* entity = nullptr;  ///< null when there is nothing to show
    std::string meshName;
    std::vector<std::uint32_t> hiddenFaces;  ///< in the order of hiding, each once
    layout::Body* body = nullptr;            ///< null for a shape of no station body
    TopoDS_Shape shape;                      ///< only without a body
    mutable FaceMap faceMap;                 ///< only without a body; filled when first asked for
};

}  // namespace vrn::visual
