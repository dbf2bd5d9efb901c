#include "visual/preview/PreviewVisualsHelper.h"

#include <string>

#include "engine/Scene.h"
#include "suite/broker/SignalBroker.h"
#include "visual/preview/FromToLineVisual.h"
#include "visual/preview/PreviewFrameVisual.h"
#include "visual/preview/SelectPointVisual.h"

namespace vrn::visual {

namespace {

PreviewVisualsHelper* living = nullptr;

void SetLook(FromToLineVisual* line, const std::string& color, bool selected) {
    line->setMaterial(color + (selected ? "FrameLineSelected" : "FrameLine"), "", "");
    line->resetAppearance();
}

void Show(Visual* visual) { visual->setVisible(true, /*cascade=*/false); }

void Hide(Visual* visual) { visual->setVisible(false, /*cascade=*/false); }

// Does nothing where there is one already.
template <class VisualClass, class... Look>
void MakeHidden(VisualClass*& visual, Look... look) {
    if (!visual) Hide(visual = new VisualClass(Scene::Get()->root, look...));
}

void ShowAt(Visual* visual, const rob::PoseTemplate<float>& worldPose) {
    visual->setWorldPose(worldPose);
    Show(visual);
    broker::SignalBroker::updateScene();
}

}  // namespace

PreviewVisualsHelper* gPreviewVisualsHelper = nullptr;

PreviewVisualsHelper* PreviewVisualsHelper::Get() { return living; }

PreviewVisualsHelper::PreviewVisualsHelper() {
    makeMissing();
    living = this;
}

PreviewVisualsHelper::~PreviewVisualsHelper() {
    Scene* scene = Scene::Get();
    for (SelectPointVisual* point : points) scene->deleteVisual(point);
    for (FromToLineVisual* line : {primaryLine, axisXLine, axisYLine}) scene->deleteVisual(line);
    for (PreviewFrameVisual* frame : {userFrame, objectFrame}) scene->deleteVisual(frame);
    living = nullptr;
}

void PreviewVisualsHelper::makeMissing() {
    for (SelectPointVisual*& point : points) MakeHidden(point);
    MakeHidden(primaryLine, "RedFrameLine");
    MakeHidden(axisXLine, "GreenFrameLine");
    MakeHidden(axisYLine, "BlueFrameLine");
    MakeHidden(userFrame);
    MakeHidden(objectFrame);
}

void PreviewVisualsHelper::forget(const Visual* visual) {
    const auto drop = [visual](auto*& own) {
        if (own == visual) own = nullptr;
    };
    for (SelectPointVisual*& point : points) drop(point);
    for (FromToLineVisual** line : {&primaryLine, &axisXLine, &axisYLine}) drop(*line);
    for (PreviewFrameVisual** frame : {&userFrame, &objectFrame}) drop(*frame);
}

// --- pairs of points

void PreviewVisualsHelper::showAt(std::size_t index, const Pos& point) {
    makeMissing();
    points[index]->setWorldPosition(point);
    Show(points[index]);
}

void PreviewVisualsHelper::addFrom(std::size_t first, FromToLineVisual* line, const Pos& point) {
    showAt(first, point);
    const SelectPointVisual* second = points[first + 1];
    if (second->visible) {
        line->setPos(point, second->getWorldPosition());
        Show(line);
    }
    broker::SignalBroker::updateScene();
}

void PreviewVisualsHelper::addTo(std::size_t second, FromToLineVisual* line, const Pos& point) {
    showAt(second, point);
    line->setPos(points[second - 1]->getWorldPosition(), point);
    Show(line);
    broker::SignalBroker::updateScene();
}

void PreviewVisualsHelper::doAddPrimaryFrom(const Pos& point) { addFrom(0, primaryLine, point); }
void PreviewVisualsHelper::doAddPrimaryTo(const Pos& point) { addTo(1, primaryLine, point); }
void PreviewVisualsHelper::doAddAxisXFrom(const Pos& point) { addFrom(2, axisXLine, point); }
void PreviewVisualsHelper::doAddAxisXTo(const Pos& point) { addTo(3, axisXLine, point); }
void PreviewVisualsHelper::doAddAxisYFrom(const Pos& point) { addFrom(4, axisYLine, point); }
void PreviewVisualsHelper::doAddAxisYTo(const Pos& point) { addTo(5, axisYLine, point); }

void PreviewVisualsHelper::doSetPrimaryLineSelected(bool selected) {
    makeMissing();
    SetLook(primaryLine, "Red", selected);
}
void PreviewVisualsHelper::doSetAxisXLineSelected(bool selected) {
    makeMissing();
    SetLook(axisXLine, "Green", selected);
}
void PreviewVisualsHelper::doSetAxisYLineSelected(bool selected) {
    makeMissing();
    SetLook(axisYLine, "Blue", selected);
}

// --- triangles

void PreviewVisualsHelper::joinCorners(FromToLineVisual* line, std::size_t from, std::size_t to) {
    if (!points[from]->visible || !points[to]->visible) return;
    line->setPos(points[from]->getWorldPosition(), points[to]->getWorldPosition());
    Show(line);
}

void PreviewVisualsHelper::addCorner(std::size_t corner, const Pos& point) {
    showAt(corner, point);
    if (corner != 2) joinCorners(primaryLine, 0, 1);
    if (corner != 0) joinCorners(axisXLine, 1, 2);
    if (corner != 1) joinCorners(axisYLine, 2, 0);
    broker::SignalBroker::updateScene();
}

void PreviewVisualsHelper::doAddSelectPoint1(const Pos& point) { addCorner(0, point); }
void PreviewVisualsHelper::doAddSelectPoint2(const Pos& point) { addCorner(1, point); }
void PreviewVisualsHelper::doAddSelectPoint3(const Pos& point) { addCorner(2, point); }
void PreviewVisualsHelper::doAddSelectFramePoint1(const Pos& point) { addCorner(0, point); }
void PreviewVisualsHelper::doAddSelectFramePoint2(const Pos& point) { addCorner(1, point); }
void PreviewVisualsHelper::doAddSelectFramePoint3(const Pos& point) { addCorner(2, point); }

// --- frames

void PreviewVisualsHelper::doAddPreviewUserFrame(const rob::PoseTemplate<float>& pose) {
    makeMissing();
    ShowAt(userFrame, pose);
}

void PreviewVisualsHelper::doAddPreviewObjectFrame(const rob::PoseTemplate<float>& pose) {
    makeMissing();
    ShowAt(objectFrame, pose);
}

void PreviewVisualsHelper::doRemoveAllVisuals() {
    makeMissing();
    for (SelectPointVisual* point : points) {
        point->setWorldPosition({0, 0, 0});
        Hide(point);
    }
    for (FromToLineVisual* line : {primaryLine, axisXLine, axisYLine}) Hide(line);
    for (PreviewFrameVisual* frame : {userFrame, objectFrame}) Hide(frame);
    broker::SignalBroker::updateScene();
}

void PreviewVisualsHelper::removeAllVisuals() { Scene::Get()->removeAllPositionVisuals(); }

}  // namespace vrn::visual
