#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "mesh/FaceMap.h"
#include "suite/rob/VectorTypes.h"
#include "visual/VrnVisualApi.h"

namespace cadcam {
template <class T>
struct TMesh;
}

namespace vrn {
struct ColorInfo;
}

namespace vrn::visual {

class FacetVisual;
class Mesh;
class PaintMesh;
class SolidVisual;

/// Keeps triangle records by name and turns them into Ogre meshes of the same name.
///
/// A name is the identity of a mesh: two records of one name share one Ogre mesh, and the second
/// upload does nothing. Two kinds of record are kept: global meshes, built once and shared by all
/// visuals of a kind, and meshes that visuals bring along and delete. The manager owns what it
/// stores. Like the other singletons it lives until the process ends. Thread: render, all of it,
/// unless an operation says otherwise.
///
/// What an upload refuses with std::invalid_argument, before it changes anything: a null pointer,
/// normals or colours that are neither absent nor one a vertex, an index without a vertex. What
/// Ogre throws passes through. One or two indices too many at the end are uploaded and draw
/// nothing.
class VRN_VISUAL_API MeshManager {
public:
    /// Needs a running Ogre with a window: builds and uploads the global meshes.
    MeshManager();
    MeshManager(const MeshManager&) = delete;
    MeshManager& operator=(const MeshManager&) = delete;

    /// The manager that Init made; null before.
    [[nodiscard]] static MeshManager* Get();

    // ---- registry

    /// Stores and uploads `mesh`, which from then on is the manager's. Does nothing if the name is
    /// taken: the record then stays the caller's, also when it throws.
    void addMesh(Mesh* mesh);
    /// Stores and uploads `mesh` under its name in place of any earlier one, which is given up and
    /// not deleted: whoever still holds it owns it again. If the Ogre mesh of that name exists it
    /// stays as it is. If it throws nothing is stored.
    void addPaintMesh(PaintMesh* mesh);
    /// Stores `mesh` for the rest of the run if the name is free; uploads it in either case, which
    /// does nothing if the Ogre mesh exists. On a taken name, or if it throws, the record stays the
    /// caller's.
    void addGlobalMesh(Mesh* mesh);

    /// The global mesh of that name; null if there is none.
    [[nodiscard]] Mesh* getGlobalMesh(const std::string& name) const;
    /// The mesh of that name; global meshes are not looked at. Throws std::out_of_range,
    /// "unordered_map::at", if there is none: ask hasMesh where it may be absent.
    [[nodiscard]] Mesh* getMesh(const std::string& name) const;
    /// Whether getMesh would find the name.
    [[nodiscard]] bool hasMesh(const std::string& name) const;

    /// Removes the record and the Ogre mesh and deletes the record, also when it is a PaintMesh.
    /// A visual that still shows the mesh goes on doing so, and nothing hits it any more. Throws
    /// std::out_of_range if `mesh` is null or not the record that is stored under its name.
    void deleteMesh(Mesh* mesh);
    void deleteMesh(PaintMesh* mesh);

    /// Gives up one reference to the Ogre mesh of a shape and removes the mesh with the last. Does
    /// nothing for a name that no shape has.
    void removeOgreMesh(const std::string& name);

    /// Makes the Ogre mesh of the record's name: one sub-mesh, a triangle list of its own vertices,
    /// 32-bit indices; position, then normal and colour where the record has them, three floats
    /// each, interleaved. Does nothing if Ogre knows the name, even when the record differs. A
    /// record without vertices gives an Ogre mesh without buffers and with null bounds: an entity
    /// on it draws nothing.
    void loadToGpu(Mesh* mesh);
    /// The same with position, normal and RGBA colour, 40 bytes a vertex; normals and colours must
    /// be there.
    void loadToGpu(PaintMesh* mesh);

    // ---- meshes from elsewhere

    /// Reads an STL file into a record named by `uri`, stores it if the name is free, uploads it
    /// and returns it; on a taken name the file is read all the same and the earlier record is
    /// returned. Throws std::runtime_error "Not stl file" unless the last four characters are
    /// ".stl" or ".STL" (mixed case is refused), and what STLLoader::Load throws.
    Mesh* loadStl(const std::string& uri);

    /// Takes over a mesh of the machining side: its vertices in single precision, its triangles,
    /// and normals averaged over the triangles round a vertex, the larger ones counting for more.
    /// Stored and uploaded as "CAM_MESH" in place of the earlier one, which is deleted; an entity
    /// that shows that one keeps its Ogre mesh alive. Throws std::invalid_argument if `source` is
    /// null and std::out_of_range for an index without a vertex, and then changes nothing.
    Mesh* loadCamMesh(const cadcam::TMesh<double>* source);

    /// A copy of `source` for painting, named as `source` with "_paint" behind it: every vertex,
    /// normal and index, and an invisible blue (0, 0, 1, 0) on each vertex. The caller owns it.
    /// Thread: pure.
    [[nodiscard]] static PaintMesh* createPaintMeshFromMesh(const Mesh* source);
    /// The same of the mesh that a body shows. Throws std::out_of_range, "unordered_map::at", for
    /// a mesh without a record, as those of shapes and the global ones are, and
    /// std::invalid_argument for null.
    [[nodiscard]] PaintMesh* createPaintMesh(const FacetVisual* visual) const;
    /// Sends the colours of the vertices in `changedVertices` to the graphics card and empties that
    /// list. A mesh that was not uploaded is left as it is.
    void updatePaintMeshColor(PaintMesh* mesh);

    // ---- bodies: the faces that a solid shows, triangulated beforehand, in one mesh with a colour
    // on each vertex. Such a mesh has no record here; it is kept by a count of those who loaded it.
    // A null solid throws std::invalid_argument.

    /// Makes the Ogre mesh of the solid's current mesh name in the body's stored colours. If there
    /// is one of that name it is taken as it is, with the colours that it shows, and its count goes
    /// up. Throws NoTriangleMesh if the solid shows no triangle (the count stays), the errors of a
    /// colour that is not a sign and six hexadecimal digits, and what getShapeMesh throws.
    void loadShape(SolidVisual* solid);
    /// The same in the given colours.
    void loadShape(SolidVisual* solid, const ColorInfo& colorInfo);

    /// The visible ones of `faces`, in ascending order: the vertices of a face are the nodes of its
    /// triangulation, with a normal each, shared with no other face; hence the vertices of face k
    /// begin behind those of all visible, triangulated faces below k. With `colorInfo` each vertex
    /// has the colour of its face, or else the body's; with null none has one. Returns null if
    /// there is no triangle. mesh/ShapeTriangles.h tells how a face is taken over. Throws
    /// Standard_TypeMismatch, "TopoDS::Face", for an entry that is not a face, and
    /// Standard_ConstructionError for a zero normal.
    [[nodiscard]] static std::unique_ptr<Mesh> getShapeMesh(const TopoDS_Shape& shape,
                                                            const FaceMap& faces,
                                                            SolidVisual* solid,
                                                            const ColorInfo* colorInfo);

    /// Forgets the shape meshes named `meshName`, alone or with numbers of hidden faces behind it,
    /// whatever their counts, but for those in `inUse`. For a body whose geometry changed under its
    /// name: hiding and showing faces leaves counts behind that would keep the old one.
    void dropShapeMeshes(const std::string& meshName, const std::unordered_set<std::string>& inUse);

    // ---- colours of bodies, as they are shown: these write to the vertices of the mesh and store
    // nothing. Solids that share a mesh share its colours. Without the mesh, or without colours in
    // it, the writers do nothing. Components are 0 to 1 and not clamped.

    /// Every vertex.
    void SetColor(const std::string& meshName, const rob::ColorTemplate<float>& color);
    /// The vertices of one face, counted from 1, in the solid's current mesh. Does nothing for a
    /// hidden face and for 0. Throws as getShapeMesh for an index past the faces
    /// (Standard_OutOfRange, "NCollection_IndexedMap::FindKey") or an entry that is no face.
    void SetFaceColor(SolidVisual* solid, std::uint32_t face,
                      const rob::ColorTemplate<float>& color);
    /// What the first vertex of the face shows in a mesh of all faces of `shape`: hidden faces are
    /// not known here. Throws as SetFaceColor, and std::out_of_range if the face has no coloured
    /// vertex there.
    [[nodiscard]] rob::ColorTemplate<float> GetFaceColor(const std::string& meshName,
                                                         const TopoDS_Shape& shape,
                                                         std::uint32_t face);
    /// Every visible face of the solid in its stored colour. Throws for stored colours that do not
    /// parse.
    void ColorReset(SolidVisual* solid);

    // ---- shapes; each stores, uploads and returns the global mesh of that name, and returns the
    // one that is already there if the name is taken. mesh/Shapes.h tells the form and what is
    // thrown.

    Mesh* createSphereComponent(const std::string& name, float radius, int stacks, int slices);
    Mesh* createCylinderComponent(const std::string& name, float radius, float height, int stacks,
                                  int slices);
    Mesh* createConeComponent(const std::string& name, float radius, float height);
    Mesh* createTorusComponent(const std::string& name, float ringRadius, float tubeRadius,
                               int ringSegments, int tubeSegments);
    Mesh* createTorusSectorComponent(const std::string& name, float sweepAngle, float ringRadius,
                                     float tubeRadius, int ringSegments, int tubeSegments);

    /// Flat-shaded copy of a triangle list: three vertices of its own for each triangle, with the
    /// cross product of the two edges from the first corner (not normalised) as their normal. Not
    /// stored: the caller owns it. Throws std::out_of_range for an index without a vertex; one or
    /// two indices too many at the end are passed over. Thread: pure.
    [[nodiscard]] static Mesh* CreateMesh(const std::string& name,
                                          const std::vector<rob::PosTemplate<float>>& vertices,
                                          const std::vector<unsigned int>& indices);

    /// `text` as flat triangles in the XY plane, facing +Z, first baseline at y 0, capitals 1 high.
    /// A line feed goes back to x 0 and 1.4 down, a blank 0.4 ahead; what is not from '!' to '~' is
    /// passed over. The number has no effect. The mesh is named by the text and not stored: the
    /// caller owns it. Thread: pure.
    [[nodiscard]] static Mesh* CreateTextMesh(const std::string& text, double unused);

protected:
    std::unordered_map<std::string, Mesh*> globalMeshes;
    std::unordered_map<std::string, Mesh*> meshes;
    /// How many visuals show the Ogre mesh of a shape. Such a mesh has no record here.
    std::unordered_map<std::string, std::uint32_t> shapeMeshRefs;

private:
    Mesh* keepGlobal(std::unique_ptr<Mesh> mesh);

    void createGlobleMeshes();  // spelling is part of the interface
    void createDragHandleMesh();
    void createDragHandle();
    void createArrowMeshes();
    void createHandleMeshes();
    void createUvIndicator();
    void createFrameOgreMesh(const std::string& name);

    std::unordered_set<std::string>
        paintMeshNames;  ///< those of `meshes` that are deleted as PaintMesh
};

/// The manager. Set by Init once Ogre runs; null before, and never deleted.
VRN_VISUAL_API extern MeshManager* gMeshMgr;

}  // namespace vrn::visual
