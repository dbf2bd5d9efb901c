#pragma once

#include <memory>
#include <string>

#include "mesh/Mesh.h"

// The built-in shapes as triangle records, without the graphics card. Lengths are model units,
// angles radians. All triangles wind counter-clockwise seen from where their normals point to.
// Thread: pure.

namespace vrn::visual {

/// A sphere about the origin with its poles on Y: stacks + 1 rings of slices + 1 vertices, the
/// first and last of a ring in one place. Fewer than one stack or slice gives an empty mesh. Throws
/// std::overflow_error if the radius is at most 1e-7.
[[nodiscard]] VRN_VISUAL_API std::unique_ptr<Mesh> MakeSphere(const std::string& name, float radius,
                                                              int stacks, int slices);

/// A cylinder about Z: its side from 0 to `height`, laid out as the sphere, then two fans of slices
/// + 2 vertices, rim first and centre last. The first fan faces +Z and stands at half the height,
/// inside the side; the second faces -Z at 0. Empty and thrown as for the sphere.
[[nodiscard]] VRN_VISUAL_API std::unique_ptr<Mesh> MakeCylinder(const std::string& name,
                                                                float radius, float height,
                                                                int stacks, int slices);

/// A cone about Z with its base at 0 and its tip at `height`, from the B-rep solid: a chord error
/// of at most 0.25 and 20 degrees between neighbours. Throws Standard_Failure's children for
/// numbers that make no cone.
[[nodiscard]] VRN_VISUAL_API std::unique_ptr<Mesh> MakeCone(const std::string& name, float radius,
                                                            float height);

/// A ring about Z, closed: a sector of 2 pi.
[[nodiscard]] VRN_VISUAL_API std::unique_ptr<Mesh> MakeTorus(const std::string& name,
                                                             float ringRadius, float tubeRadius,
                                                             int ringSegments, int tubeSegments);

/// A part of a ring about Z, from +X towards +Y, without end caps. Fewer than 3 segments count
/// as 3. Throws std::overflow_error if the tube's radius is at most 1e-7.
[[nodiscard]] VRN_VISUAL_API std::unique_ptr<Mesh> MakeTorusSector(
    const std::string& name, float sweepAngle, float ringRadius, float tubeRadius, int ringSegments,
    int tubeSegments);

}  // namespace vrn::visual
