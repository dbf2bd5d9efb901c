#include <ostream>
#include <stdexcept>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <gp_Pnt.hxx>
#include <TopoDS_Edge.hxx>

#include "tests/visual/StationFixture.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/PointVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/process/SprayVisual.h"
#include "visual/station/AssemblyVisual.h"
#include "visual/station/DeviceVisual.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/JointTargetVisual.h"
#include "visual/station/LinkVisual.h"
#include "visual/station/ManipulatorVisual.h"
#include "visual/station/PartVisual.h"
#include "visual/station/SensorVisual.h"
#include "visual/station/TcpVisual.h"
#include "visual/station/ToolVisual.h"
#include "visual/station/UserComponentVisual.h"
#include "visual/station/WObjVisual.h"
#include "visual/station/WristVisual.h"

namespace vrn::test {

using visual::Visual;

namespace {

struct Builder {
    const char* name;
    void (*build)(Visual* parent);
};

void PrintTo(const Builder& builder, std::ostream* out) { *out << builder.name; }

constexpr sdf::SdfNode* none = nullptr;

TopoDS_Edge AnEdge() { return BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0)).Edge(); }

const Builder builders[] = {
    {"Assembly", [](Visual* parent) { visual::AssemblyVisual::Build(parent, none); }},
    {"Curve", [](Visual* parent) { visual::CurveVisual::Build(parent, none, AnEdge()); }},
    {"CurveWithoutParent", [](Visual*) { visual::CurveVisual::Build(nullptr, AnEdge()); }},
    {"Device",
     [](Visual* parent) { visual::DeviceVisual::Build(parent, none, /*buildChildren=*/true); }},
    {"Frame", [](Visual* parent) { visual::FrameVisual::Build(parent, none); }},
    {"JointTarget", [](Visual* parent) { visual::JointTargetVisual::Build(parent, none); }},
    {"Link",
     [](Visual* parent) { visual::LinkVisual::Build(none, parent, /*buildChildren=*/true); }},
    {"Manipulator",
     [](Visual* parent) {
         visual::ManipulatorVisual::Build(parent, none, /*buildChildren=*/true);
     }},
    {"Mechanism",
     [](Visual* parent) { visual::MechanismVisual(none, parent, /*buildChildren=*/true); }},
    {"Mesh", [](Visual* parent) { visual::MeshVisual::Build(parent, none); }},
    {"Part", [](Visual* parent) { visual::PartVisual::Build(parent, none); }},
    {"Point", [](Visual* parent) { visual::PointVisual::Build(parent, none, {0, 0, 0}); }},
    {"PointCloud", [](Visual* parent) { visual::PointCloudVisual::Build(parent, none); }},
    {"Sensor", [](Visual* parent) { visual::SensorVisual::Build(parent, none); }},
    {"Solid", [](Visual* parent) { visual::SolidVisual::Build(parent, none, AnEdge()); }},
    {"Spray", [](Visual* parent) { visual::SprayVisual::Build(parent, none); }},
    {"Tcp", [](Visual* parent) { visual::TcpVisual::Build(parent, none); }},
    {"Tool",
     [](Visual* parent) { visual::ToolVisual::Build(parent, none, /*buildChildren=*/true); }},
    {"UserComponent", [](Visual* parent) { visual::UserComponentVisual::Build(parent, none); }},
    {"WObj", [](Visual* parent) { visual::WObjVisual::Build(parent, none); }},
    {"Wrist", [](Visual* parent) { visual::WristVisual::Build(parent, none); }},
};

}  // namespace

class NullModelNodes : public StationVisuals, public testing::WithParamInterface<Builder> {};

TEST_P(NullModelNodes, AreRefusedByEachBuilderAndNothingIsLeft) {
    const Traces before = traces();
    EXPECT_THROW(GetParam().build(root()), std::invalid_argument);
    EXPECT_EQ(traces(), before);
}

INSTANTIATE_TEST_SUITE_P(Each, NullModelNodes, testing::ValuesIn(builders),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace vrn::test
