#pragma once

#include <OgreVector.h>
#include <TopoDS_Edge.hxx>

#include "suite/geom/MfgVectors.h"
#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

/// One process vector: a line from its point on the edge, along its direction, as long as the band
/// is wide. A host that wants it to be picked registers it with VisualSelection::addLineVisual.
/// Thread: render.
class VRN_VISUAL_API BandVectorVisual : public LineVisual {
public:
    /// Throws std::invalid_argument for an edge without a curve; then nothing is left.
    BandVectorVisual(Visual* parent, const TopoDS_Edge& onEdge,
                     const geometry::MfgVector& shownVector);
    ~BandVectorVisual() override;

    /// Red, green, blue, alpha of all its lines.
    void setColor(const Ogre::Vector<4, float>& color);
    /// One line more.
    void addLine(const rob::PosTemplate<double>& a, const rob::PosTemplate<double>& b);

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;

    [[nodiscard]] const TopoDS_Edge& getEdge() const { return edge; }
    [[nodiscard]] const geometry::MfgVector& getVector() const { return vector; }

    /// Also the width of the band.
    static constexpr double length = 25.0;

private:
    TopoDS_Edge edge;
    geometry::MfgVector vector;
};

}  // namespace vrn::visual
