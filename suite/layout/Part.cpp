#include "suite/layout/Part.h"

#include "suite/layout/Body.h"
#include "suite/layout/Layout.h"
#include "suite/sdf/ObjectStore.h"

namespace vrn::layout {

Part::Part(std::string_view partName) : SdfObject(sdf::ObjectType::Part, partName, "part") {}

Part::~Part() { Layout::inst()->remove(*this); }

void Part::addBody(Body& body) { addChild(body); }

std::vector<Body*> Part::bodies() const { return getChildrenOf<Body>(); }

void Part::setDetectable(bool detectable) { element->set("detectable", detectable); }

Part* MakeStlPart(sdf::ObjectStore& store, std::string_view name, const std::string& uri,
                  const rob::PoseTemplate<double>& pose) {
    auto* part = store.make<Part>(name);
    part->addBody(*store.make<Body>(name, uri, std::string("stl")));
    part->setPose(pose);
    return part;
}

Assembly::Assembly(std::string_view assemblyName)
    : SdfObject(sdf::ObjectType::Assembly, assemblyName, "assembly") {}

Assembly::~Assembly() { Layout::inst()->remove(*this); }

}  // namespace vrn::layout
