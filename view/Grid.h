#pragma once

#include <cstdint>
#include <string>

#include "visual/VrnVisualApi.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

class Scene;
class Visual;

/// The ground grid: lines through the origin in both directions of a plane, the two axes in colours
/// of their own. Lives as long as the scene. Thread: render.
class VRN_VISUAL_API Grid {
public:
    /// The axis that the grid's plane is normal to.
    enum class NormalDir : std::int32_t { X = 0, Y = 1, Z = 2 };

    /// `cells` squares of `cellSize` model units in each direction; 0 of either draws the axes'
    /// crossing point at most.
    Grid(Scene* scene, unsigned cells, unsigned cellSize);
    Grid(const Grid&) = delete;
    Grid& operator=(const Grid&) = delete;

    /// Draws the grid anew.
    void create();
    /// A number outside of the enumeration counts as Z.
    void setNormalDir(NormalDir dir);

    std::string name;
    Ogre::ManualObject* lines = nullptr;
    Visual* visual = nullptr;

private:
    void addLine(float fromX, float fromY, float toX, float toY);

    unsigned cellCount;
    unsigned cellLength;
};

}  // namespace vrn::visual
