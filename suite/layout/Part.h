#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suite/rob/PoseTypes.h"
#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::sdf {
class ObjectStore;
}

namespace vrn::layout {

class Body;

/// A part: bodies under one pose.
class VRN_SUITE_API Part : public sdf::SdfObject {
public:
    explicit Part(std::string_view name);
    ~Part() override;

    void addBody(Body& body);
    /// In order; none is null.
    [[nodiscard]] std::vector<Body*> bodies() const;
    /// Whether its bodies can be picked; without a word of ours they can.
    void setDetectable(bool detectable);
};

/// Makes a part of one STL body, both named `name`; not in the Layout yet.
///
///     Layout::inst()->add(*MakeStlPart(store, "table", "file:///data/table.stl"));
VRN_SUITE_API Part* MakeStlPart(sdf::ObjectStore& store, std::string_view name,
                                const std::string& uri, const rob::PoseTemplate<double>& pose = {});

/// A group of parts and assemblies; addChild adds them.
class VRN_SUITE_API Assembly : public sdf::SdfObject {
public:
    explicit Assembly(std::string_view name);
    ~Assembly() override;
};

}  // namespace vrn::layout
