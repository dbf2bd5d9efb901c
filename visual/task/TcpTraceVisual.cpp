#include "visual/task/TcpTraceVisual.h"

#include <stdexcept>

#include <OgreManualObject.h>
#include <OgreResourceGroupManager.h>
#include <OgreSceneManager.h>

#include "engine/Scene.h"
#include "visual/geometry/PointPicture.h"

namespace vrn::visual {

namespace {

constexpr std::size_t expectedPoints = 10800;  // three minutes at sixty a second
constexpr Ogre::uint8 traceQueueGroup = 70;    // over the other lines

void Begin(Ogre::ManualObject& line, const char* material) {
    line.begin(material, Ogre::RenderOperation::OT_LINE_STRIP,
               Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
}

}  // namespace

TcpTraceVisual::TcpTraceVisual(Visual* parent) : Visual(parent) {
    manual = Scene::Get()->sceneManager->createManualObject("TcpTraceVisual");
    manual->setBufferUsage(Ogre::HBU_CPU_TO_GPU);
    manual->estimateVertexCount(expectedPoints);
    Begin(*manual, "VertexColor");
    manual->end();
    manual->setRenderQueueGroup(traceQueueGroup);
    attachObject(manual);
}

TcpTraceVisual::~TcpTraceVisual() { Scene::Get()->sceneManager->destroyMovableObject(manual); }

void TcpTraceVisual::addColorPoint(const rob::PosTemplate<double>& pos,
                                   const rob::ColorTemplate<float>& color) {
    // The engine takes a bound that is no number for a bug of its own, and stops.
    if (!IsDrawable(pos))
        throw std::invalid_argument("a point of a trace must be finite and not beyond 1e15");
    points.push_back({pos, color});
    update();
}

void TcpTraceVisual::update() {
    // A section of no points does not outlast its end, and then there is none to rewrite.
    if (points.size() < 2 || manual->getSections().empty())
        Begin(*manual, "TcpTrace");
    else
        manual->beginUpdate(0);
    for (const auto& [pos, color] : points) {
        const rob::PosTemplate<float> drawn(pos);
        manual->position(drawn.x, drawn.y, drawn.z);
        manual->colour(color.r, color.g, color.b, 1.0f);
    }
    manual->end();
}

void TcpTraceVisual::clear() {
    manual->clear();
    points.clear();
}

}  // namespace vrn::visual
