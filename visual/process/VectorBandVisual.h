#pragma once

#include <OgreVector.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "suite/task/EdgeMfgShape.h"
#include "visual/Visual.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

class BandVectorVisual;
class MeshVisual;

/// A process along edges as a translucent ribbon: its spine are the edges, its width of 25 runs
/// along the tool's direction, so that the twist of the tool shows. Each stored direction has a
/// line; a preview, a selected direction and a selected range can stand on it besides.
///
/// The host makes and keeps it; nothing here enters it in the scene's registry. A band whose
/// drawing threw can be updated with another shape and deleted like any other. Thread: render.
class VRN_VISUAL_API VectorBandVisual : public Visual {
public:
    using PathPoint = task::EdgeMfgShape::PathPoint;

    /// Throws what updateBand throws; then nothing is left.
    VectorBandVisual(std::uint32_t idIn, Visual* parent, const task::EdgeMfgShape& shape);
    /// Deletes what the band owns, its arrow among that; what was freed already is left alone.
    ~VectorBandVisual() override;

    /// Draws another shape, or the same one after a change, in place of what was drawn. Preview and
    /// selected direction go, the selected range stays. A band that is hidden stays so with all
    /// that is drawn on it; one that hangs nowhere gets no start arrow.
    ///
    /// Throws std::overflow_error ("0-length vector cannot be normalized.") where the tool's
    /// direction runs along the edge, or where the first edge has no direction at its start, and
    /// what MfgVectors::getVectorAtParam throws. From the first of these the ribbon has a section
    /// without an end, which draws nothing, until it is updated again.
    void updateBand(const task::EdgeMfgShape& shape);

    /// One at a time, in place of the one before. A point on no used edge throws std::out_of_range.
    void previewVector(const task::EdgeMfgShape& shape, const PathPoint& point);
    void clearPreviewVector();
    void selectVector(const task::EdgeMfgShape& shape, const PathPoint& point);
    void clearSelectedVector();

    /// Draws a part of the band in another colour, in place of the one before. Throws as
    /// updateBand, which then holds for the range.
    void selectRange(const task::EdgeMfgShape& shape, const PathPoint& start, const PathPoint& end);
    void updateSelectedBand(const task::EdgeMfgShape& shape, const PathPoint& start,
                            const PathPoint& end);
    void clearSelectedRange();

    /// As Visual::setVisible, the start arrow too, wherever it hangs.
    void setVisible(bool show, bool cascade) override;
    /// Red, green, blue, alpha of the ribbon.
    void setColor(const Ogre::Vector<4, float>& color);
    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;
    /// The normal look, without selected direction, range and preview.
    void clearHighlightOrSelect() override;

    [[nodiscard]] const Ogre::ManualObject* getBand() const { return band; }
    /// Null until a range was selected once.
    [[nodiscard]] const Ogre::ManualObject* getRangeBand() const { return rangeBand; }
    /// In the order of the shape.
    [[nodiscard]] const std::vector<BandVectorVisual*>& getVectors() const { return bandVectors; }
    /// Null without one, both.
    [[nodiscard]] BandVectorVisual* getPreviewVector() const { return previewVector_; }
    [[nodiscard]] BandVectorVisual* getSelectedVector() const { return selectedVector; }
    /// At the start of the first edge, under the parent that the band had when it was drawn; null
    /// without one, also once somebody else has deleted it.
    [[nodiscard]] MeshVisual* getStartArrow() const { return startArrow; }

protected:
    void forgetChild(const Visual* child) override;

private:
    class ArrowWatch;

    void drawMfgShape(const task::EdgeMfgShape& shape);
    void drawStartArrow(const geometry::MfgVectors& first);
    void deleteStartArrow();
    void deleteOwn(BandVectorVisual*& vector);
    [[nodiscard]] BandVectorVisual* makeVector(const task::EdgeMfgShape& shape,
                                               const PathPoint& point);
    [[nodiscard]] BandVectorVisual* addVector(const TopoDS_Edge& edge,
                                              const geometry::MfgVector& vector);

    Ogre::ManualObject* band;
    Ogre::ManualObject* rangeBand = nullptr;
    std::vector<BandVectorVisual*> bandVectors;    ///< children
    BandVectorVisual* previewVector_ = nullptr;    ///< a child; the operation has the plain name
    BandVectorVisual* selectedVector = nullptr;    ///< a child
    MeshVisual* startArrow = nullptr;              ///< beside the band; arrowWatch keeps it true
    bool bandIsOpen = false, rangeIsOpen = false;  ///< after a throw, until it is drawn anew
    std::unique_ptr<ArrowWatch> arrowWatch;        ///< never null
};

}  // namespace vrn::visual
