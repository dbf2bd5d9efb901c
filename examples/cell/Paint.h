#pragma once

#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>
#include <TopoDS_Shape.hxx>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vrn::examples {

/// A shape in one colour.
struct Coloured {
    TopoDS_Shape shape;
    std::string colour;  ///< "#RRGGBB"
};

/// A body with a colour, and faces of it with colours of their own.
struct PaintedBody {
    std::string name;
    TopoDS_Shape shape;
    std::string colour;                      ///< "#RRGGBB"
    std::map<int, std::string> faceColours;  ///< by place among the shape's faces, from 1
};

/// The solids of all pieces as one body: the first piece's colour is the body's, the others' stand
/// on their faces. Throws std::invalid_argument if there is no solid.
[[nodiscard]] PaintedBody Painted(const std::string& name, const std::vector<Coloured>& pieces);

/// What a face looks like to those who choose faces.
struct FaceLook {
    gp_Pnt centre;  ///< of area
    gp_Dir normal;  ///< outward, in the middle of its parameters
    double area = 0;
    bool isPlane = false;
    bool isCylinder = false;
    double radius = 0;  ///< of a cylinder
};

/// Paints every face that `takes` accepts; returns how many that were.
int PaintFaces(PaintedBody& body, const std::string& colour,
               const std::function<bool(const FaceLook&)>& takes);

}  // namespace vrn::examples
