#pragma once

#include <cstdint>

namespace vrn {

/// The kind of a visual. The numbers are shared with the model side and never change; 6 and 18 are
/// free.
enum class VisualType : std::int32_t {
    None = 0,  ///< plain nodes with no role of their own
    Root = 1,  ///< the world visual
    Manipulator = 2,
    Tool = 3,
    Device = 4,
    Link = 5,
    Assembly = 7,
    PointCloud = 8,
    Part = 9,
    Solid = 10,  ///< B-rep bodies and spray cones
    Curve = 11,  ///< curves and process band vectors
    Edge = 12,
    WireFrame = 13,
    Mesh = 14,
    Point = 15,
    Path = 16,
    MoveInstruction = 17,
    Helper = 19,  ///< handles and what a dialog shows while it picks
    Frame = 20,
    Tcp = 21,
    RobTarget = 22,
    JointTarget = 23,
    WObj = 24,
    WObjUserFrame = 25,
    WObjObjectFrame = 26,
    UserComponent = 27,
    Sensor = 28,
    Paint = 29,
    Wrist = 30,
    PreviewCurve = 31,
    GeneratedEdge = 32,
    UVIndicator = 33,
    WorkEnvelope = 34,
};

}  // namespace vrn
