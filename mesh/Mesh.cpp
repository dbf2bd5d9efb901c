#include "mesh/Mesh.h"

#include <cmath>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;

bool IsFinite(const Pos& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// All comparisons are strict. -1 for w would be the same turn, but does not count.
bool IsNearIdentity(const Pose& pose) {
    constexpr double positionLimit = 0.01;
    constexpr double rotationLimit = 0.001;
    const auto& q = pose.rotation;
    return static_cast<double>(pose.position.asVec3().length()) < positionLimit &&
           std::abs(static_cast<double>(q.w) - 1.0) < rotationLimit &&
           std::abs(static_cast<double>(q.x)) < rotationLimit &&
           std::abs(static_cast<double>(q.y)) < rotationLimit &&
           std::abs(static_cast<double>(q.z)) < rotationLimit;
}

template <class T>
void Append(std::vector<T>& to, const std::vector<T>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

}  // namespace

Mesh::Mesh(std::string meshName) : name(std::move(meshName)) {}

Box& Mesh::getBox() {
    if (boxValid) return box;
    for (const Pos& p : vertices) {
        if (IsFinite(p)) box.addPoint(p);
    }
    boxValid = true;
    return box;
}

void Mesh::dump(std::ostream& out) const {
    out << "Vertex number: " << vertices.size() << '\n'
        << "Triangle number: " << vertices.size() / 3 << '\n';
}

void Mesh::addSubMesh(const Mesh* other, const Pose& pose) {
    if (other == nullptr) throw std::invalid_argument("the mesh to append must not be null");
    if (other == this) {  // a vector cannot be appended to itself by its own iterators
        const Mesh copy = *this;
        return addSubMesh(&copy, pose);
    }
    const std::size_t base = vertices.size();
    Append(vertices, other->vertices);
    Append(normals, other->normals);
    if (!IsNearIdentity(pose)) {
        for (std::size_t i = base; i < vertices.size(); ++i)
            vertices[i] = rob::TransformPoint(pose, vertices[i]);
        for (std::size_t i = base; i < normals.size() && i < vertices.size(); ++i)
            normals[i] = pose.rotation * normals[i];
    }
    Append(colors, other->colors);
    for (const std::uint32_t index : other->indices)
        indices.push_back(index + static_cast<std::uint32_t>(base));
}

}  // namespace vrn::visual
