#include "visual/process/VectorBandVisual.h"

#include <OgreManualObject.h>
#include <OgreNode.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "engine/Scene.h"
#include "suite/geom/ShapeTools.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/process/BandVectorVisual.h"

namespace vrn::visual {

namespace {

using Colour = Ogre::Vector<4, float>;
using geometry::MfgVector;
using geometry::MfgVectors;
using task::EdgeMfgShape;

constexpr std::size_t colourParameter = 0;

const Colour normalColour(0.34509805f, 0.9882353f, 0.99215686f, 0.5f);
const Colour selectedColour(0.9882353f, 1.0f, 0.21176471f, 0.5f);
const Colour highlightedColour(0.9882353f, 1.0f, 0.21176471f, 0.1f);
const Colour rangeColour(0.9882353f, 0.39215687f, 0.21176471f, 0.5f);

void AddVertices(Ogre::ManualObject& ribbon, const MfgVectors& vectors, double param) {
    const MfgVector v = vectors.getVectorAtParam(param);
    const rob::PosTemplate<double> p = v.getPos(vectors.edge);
    const rob::Vec3Template<double> along = v.getEdgeTangent(vectors.edge);
    const rob::Vec3Template<double> d = v.getDir(vectors.edge).asVec3();
    const rob::Vec3Template<float> normal(along.cross(d).normalized());
    for (const rob::PosTemplate<double>& corner : {p, p + d * BandVectorVisual::length}) {
        const rob::PosTemplate<float> narrowed(corner);
        ribbon.position(narrowed.x, narrowed.y, narrowed.z);
        ribbon.normal(normal.x, normal.y, normal.z);
    }
}

// A section that a throw left open takes no other beside it, and no end once it is cleared away.
void ClearStrip(Ogre::ManualObject& ribbon, bool& isOpen) {
    if (isOpen) ribbon.end();
    isOpen = false;
    ribbon.clear();
}

// One strip, also across the joints of edges. Null for no points. `isOpen` stays true where it
// throws: the section is then left open.
Ogre::ManualObject::ManualObjectSection* DrawStrip(
    Ogre::ManualObject& ribbon, bool& isOpen, const char* materialName,
    const std::vector<MfgVectors>& used, const std::vector<EdgeMfgShape::PathPoint>& points) {
    ClearStrip(ribbon, isOpen);
    ribbon.begin(materialName, Ogre::RenderOperation::OT_TRIANGLE_STRIP,
                 Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
    isOpen = true;
    for (const auto& point : points)
        AddVertices(ribbon, used.at(static_cast<std::size_t>(point.index)), point.param);
    isOpen = false;
    return ribbon.end();
}

}  // namespace

/// Tells its band when the arrow goes, whoever deletes it, wherever it hangs by then.
class VectorBandVisual::ArrowWatch : public Ogre::Node::Listener {
public:
    explicit ArrowWatch(VectorBandVisual& watchedFor) : band(watchedFor) {}
    void nodeDestroyed(const Ogre::Node* /*node*/) override { band.startArrow = nullptr; }

private:
    VectorBandVisual& band;
};

VectorBandVisual::VectorBandVisual(std::uint32_t idIn, Visual* parent, const EdgeMfgShape& shape)
    : Visual(idIn, parent),
      band(node->getCreator()->createManualObject()),
      arrowWatch(std::make_unique<ArrowWatch>(*this)) {
    attachObject(band);
    try {
        drawMfgShape(shape);
    } catch (...) {
        clearChildren();
        deleteStartArrow();
        node->getCreator()->destroyMovableObject(band);
        throw;
    }
    VectorBandVisual::resetAppearance();
}

VectorBandVisual::~VectorBandVisual() {
    deleteStartArrow();
    clearChildren();
    node->getCreator()->destroyMovableObject(band);
    if (rangeBand) node->getCreator()->destroyMovableObject(rangeBand);
}

void VectorBandVisual::drawMfgShape(const EdgeMfgShape& shape) {
    const std::vector<MfgVectors> used = shape.getUsedMfgVectors();
    DrawStrip(*band, bandIsOpen, "VectorBand", used, shape.getPathPointsForRender());
    setColor(normalColour);  // before anything below may throw
    for (const MfgVectors& vectors : used)
        for (const MfgVector& vector : vectors.vectors)
            bandVectors.push_back(addVector(vectors.edge, vector));
    used.empty() ? deleteStartArrow() : drawStartArrow(used.front());
}

void VectorBandVisual::drawStartArrow(const MfgVectors& first) {
    rob::PosTemplate<float> position;
    rob::DirTemplate<float> direction{1, 0, 0};
    geometry::GetEdgeStartPointInfo(first.edge, position, direction);
    deleteStartArrow();
    const rob::DirTemplate<float> unit(direction.asVec3().normalized());
    Visual* parent = getParent();
    if (!parent) return;
    startArrow = MeshVisual::BuildArrow(parent, position, unit);
    startArrow->node->setListener(arrowWatch.get());
    startArrow->setVisible(visible, /*cascade=*/false);
}

void VectorBandVisual::deleteStartArrow() {
    if (!startArrow) return;
    for (const Visual* above = getParent(); above; above = above->getParent()) {
        if (above != startArrow) continue;
        // A band that was hung under its own arrow would be deleted with it.
        startArrow->node->setListener(nullptr);
        startArrow = nullptr;
        return;
    }
    Scene::Get()->deleteVisual(startArrow);
}

void VectorBandVisual::updateBand(const EdgeMfgShape& shape) {
    ClearStrip(*band, bandIsOpen);
    while (!bandVectors.empty()) Scene::Get()->deleteVisual(bandVectors.back());
    clearPreviewVector();
    clearSelectedVector();
    drawMfgShape(shape);
    resetAppearance();
}

void VectorBandVisual::forgetChild(const Visual* child) {
    std::erase(bandVectors, child);
    if (previewVector_ == child) previewVector_ = nullptr;
    if (selectedVector == child) selectedVector = nullptr;
}

void VectorBandVisual::deleteOwn(BandVectorVisual*& vector) {
    Scene::Get()->deleteVisual(vector);
    vector = nullptr;
}

BandVectorVisual* VectorBandVisual::makeVector(const EdgeMfgShape& shape, const PathPoint& point) {
    const std::vector<MfgVectors> used = shape.getUsedMfgVectors();
    const MfgVectors& vectors = used.at(static_cast<std::size_t>(point.index));
    return addVector(vectors.edge, vectors.getVectorAtParam(point.param));
}

BandVectorVisual* VectorBandVisual::addVector(const TopoDS_Edge& edge, const MfgVector& vector) {
    auto* added = new BandVectorVisual(this, edge, vector);
    added->setVisible(visible, /*cascade=*/false);
    return added;
}

void VectorBandVisual::setVisible(bool show, bool cascade) {
    Visual::setVisible(show, cascade);
    if (startArrow) startArrow->setVisible(show, cascade);
}

void VectorBandVisual::previewVector(const EdgeMfgShape& shape, const PathPoint& point) {
    clearPreviewVector();
    previewVector_ = makeVector(shape, point);
    previewVector_->setHighlighted();
}

void VectorBandVisual::clearPreviewVector() { deleteOwn(previewVector_); }

void VectorBandVisual::selectVector(const EdgeMfgShape& shape, const PathPoint& point) {
    clearSelectedVector();
    selectedVector = makeVector(shape, point);
    selectedVector->setSelected();
}

void VectorBandVisual::clearSelectedVector() { deleteOwn(selectedVector); }

void VectorBandVisual::selectRange(const EdgeMfgShape& shape, const PathPoint& start,
                                   const PathPoint& end) {
    if (!rangeBand) {
        rangeBand = node->getCreator()->createManualObject();
        attachObject(rangeBand);
        rangeBand->setVisible(visible);
    } else {
        clearSelectedRange();
    }
    if (auto* section =
            DrawStrip(*rangeBand, rangeIsOpen, "SelectedBand", shape.getUsedMfgVectors(),
                      shape.getPathPointsForRender(start, end)))
        section->setCustomParameter(colourParameter, rangeColour);
}

void VectorBandVisual::updateSelectedBand(const EdgeMfgShape& shape, const PathPoint& start,
                                          const PathPoint& end) {
    selectRange(shape, start, end);
}

void VectorBandVisual::clearSelectedRange() {
    if (rangeBand) ClearStrip(*rangeBand, rangeIsOpen);
}

void VectorBandVisual::setColor(const Colour& color) {
    for (auto* section : band->getSections()) section->setCustomParameter(colourParameter, color);
}

void VectorBandVisual::resetAppearance() { setColor(normalColour); }

void VectorBandVisual::setSelected() { setColor(selectedColour); }

void VectorBandVisual::setHighlighted() { setColor(highlightedColour); }

void VectorBandVisual::clearHighlightOrSelect() {
    resetAppearance();
    clearSelectedVector();
    clearSelectedRange();
    clearPreviewVector();
}

}  // namespace vrn::visual
