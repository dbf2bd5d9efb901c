#pragma once

#include <cstdint>

#include "suite/SuiteApi.h"

namespace vrn::sdf {

/// What a model object is. The numbers below 100 are shared by all libraries of the suite and
/// stored in stations; those from 100 on belong to this model alone.
enum class ObjectType : std::int32_t {
    None = 0,
    Assembly = 2,
    Part = 4,
    Manipulator = 9,
    Tool = 10,
    Device = 11,
    UserComponent = 13,
    Sensor = 24,
    SegmentSensor = 25,  // a Sensor
    PlaneSensor = 26,    // a Sensor
    SprayComponent = 29,
    MoveInstruction = 31,
    LinearMove = 32,         // a MoveInstruction
    CircularMove = 33,       // a MoveInstruction
    JointMove = 34,          // a MoveInstruction
    ActionInstruction = 36,  // an instruction that does not move and has no visual
    PathOperation = 52,      // of a plain path
    SinglePathOperation = 53,
    ProcessPathOperation = 54,
    PathGroup = 55,
    PathGroupContainer = 56,

    StationLogic = 100,
    Body,
    Link,
    Frame,
    PointCloud,
    Wrist,
    MechanismNode,
    Task,
    Path,
    WObjData,
    ObjectFrame,
    ToolData,
    RobTarget,
    JointTarget,
    Operation,
};

/// Whether `type` is `kind` or derives from it, as a LinearMove is a MoveInstruction. Thread: pure.
[[nodiscard]] VRN_SUITE_API bool IsKindOf(ObjectType type, ObjectType kind);

}  // namespace vrn::sdf
