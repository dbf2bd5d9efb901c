#pragma once

/// The colours of the robot cell.
namespace vrn::examples::livery {

inline constexpr const char* ivory = "#E9E4D8";     // castings of the arm
inline constexpr const char* petrol = "#14707A";    // its covers, pockets and rings
inline constexpr const char* graphite = "#343A42";  // motors, hoses
inline constexpr const char* steel = "#A9B2BA";     // machined and ground
inline constexpr const char* darkSteel = "#6B757F";
inline constexpr const char* bolt = "#50575F";
inline constexpr const char* bronze = "#B58A45";        // the workpiece as cast
inline constexpr const char* brightBronze = "#E2C071";  // and where it was machined
inline constexpr const char* ruby = "#C4123A";          // tip of the touch probe
inline constexpr const char* warning = "#F2B31B";
inline constexpr const char* concrete = "#8A9198";

}  // namespace vrn::examples::livery
