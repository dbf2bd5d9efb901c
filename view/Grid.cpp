#include "view/Grid.h"

#include <OgreManualObject.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "engine/Scene.h"
#include "view/UpAxis.h"
#include "visual/Visual.h"

namespace vrn::visual {

namespace {

constexpr const char* lineMaterial = "VertexColor";

// Quiet against the grey ground of the viewport: a scale to read distances by, not a thing to look
// at.
const Ogre::ColourValue lineColour(0.53f, 0.53f, 0.54f);
const Ogre::ColourValue axisXColour(0.70f, 0.36f, 0.36f);
const Ogre::ColourValue axisYColour(0.38f, 0.62f, 0.38f);

}  // namespace

Grid::Grid(Scene* scene, unsigned cells, unsigned cellSize)
    : name("Grid"),
      lines(scene->sceneManager->createManualObject()),
      visual(new Visual(name, scene->root)),
      cellCount(cells),
      cellLength(cellSize) {
    visual->attachObject(lines);
    create();
    setNormalDir(static_cast<NormalDir>(scene->settings.verticalDir));
}

void Grid::addLine(float fromX, float fromY, float toX, float toY) {
    lines->position(fromX, fromY, 0.0f);
    lines->position(toX, toY, 0.0f);
}

void Grid::create() {
    const float half = static_cast<float>(cellCount) * static_cast<float>(cellLength) * 0.5f;
    const auto section = [&](const Ogre::ColourValue& colour, const auto& draw) {
        lines->begin(lineMaterial, Ogre::RenderOperation::OT_LINE_LIST,
                     Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
        lines->colour(colour);
        draw();
        lines->end();
    };
    lines->clear();
    section(lineColour, [&] {
        for (unsigned i = 0; i <= cellCount; ++i) {
            if (2 * i == cellCount) continue;  // the axis stands there
            const float at = static_cast<float>(i) * static_cast<float>(cellLength) - half;
            addLine(at, -half, at, half);
            addLine(-half, at, half, at);
        }
    });
    section(axisXColour, [&] { addLine(-half, 0, half, 0); });
    section(axisYColour, [&] { addLine(0, -half, 0, half); });
}

void Grid::setNormalDir(NormalDir dir) {
    visual->node->setOrientation(UpAxisTurn(static_cast<int>(dir)));
}

}  // namespace vrn::visual
