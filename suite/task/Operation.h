#pragma once

#include <cstdint>
#include <string_view>

#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::task {

/// A step of a process plan; the objects that it is made of are its children.
class VRN_SUITE_API Operation : public sdf::SdfObject {
public:
    /// `type` is Operation, PathGroup or PathGroupContainer; another throws std::invalid_argument.
    explicit Operation(std::string_view name, sdf::ObjectType type = sdf::ObjectType::Operation);
    ~Operation() override;

protected:
    using SdfObject::SdfObject;
};

/// An operation that runs one path.
class VRN_SUITE_API PathOperation : public Operation {
public:
    /// `type` is PathOperation, SinglePathOperation or ProcessPathOperation; another throws
    /// std::invalid_argument. `runPathId` 0 stands for no path yet.
    explicit PathOperation(std::string_view name, std::uint32_t runPathId = 0,
                           sdf::ObjectType type = sdf::ObjectType::PathOperation);
    ~PathOperation() override;

    [[nodiscard]] bool hasPath() const { return pathId != 0; }
    /// 0 without a path.
    [[nodiscard]] std::uint32_t getPathId() const { return pathId; }
    void setPathId(std::uint32_t runPathId) { pathId = runPathId; }

private:
    std::uint32_t pathId;
};

}  // namespace vrn::task
