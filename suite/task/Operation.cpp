#include "suite/task/Operation.h"

#include <algorithm>
#include <initializer_list>
#include <stdexcept>
#include <string>

namespace vrn::task {

namespace {

using sdf::ObjectType;

ObjectType RequireOneOf(std::initializer_list<ObjectType> allowed, ObjectType type) {
    if (std::ranges::find(allowed, type) == allowed.end())
        throw std::invalid_argument("expected a kind of operation, got " +
                                    std::to_string(static_cast<int>(type)));
    return type;
}

}  // namespace

Operation::Operation(std::string_view operationName, ObjectType type)
    : SdfObject(
          RequireOneOf(
              {ObjectType::Operation, ObjectType::PathGroup, ObjectType::PathGroupContainer}, type),
          operationName, "operation") {}
Operation::~Operation() = default;

PathOperation::PathOperation(std::string_view operationName, std::uint32_t runPathId,
                             ObjectType type)
    : Operation(RequireOneOf({ObjectType::PathOperation, ObjectType::SinglePathOperation,
                              ObjectType::ProcessPathOperation},
                             type),
                operationName, "path_operation"),
      pathId(runPathId) {}
PathOperation::~PathOperation() = default;

}  // namespace vrn::task
