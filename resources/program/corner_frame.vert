#version 330 core
// A vertex of the axes that stand in a corner of the viewport.
//
// The node carries the view's turn itself, so its world matrix leads straight to view space. From
// there the frame goes to pixels and never meets the camera's projection: it keeps its size.

#include "given_colour.glsl"

in vec4 vertex;
in vec3 normal;
in vec4 colour;

uniform mat4 world;
uniform mat4 inverseTransposeWorld;
uniform vec4 centre;         // x, y in pixels from the viewport's left and bottom edge
uniform vec4 viewportSize;   // width, height in pixels, and their inverses
uniform float flip;          // -1 where the picture is drawn upside down, else 1
uniform float pixelsPerUnit;

out vec3 viewPosition;
out vec3 viewNormal;
out vec4 givenColour;

const float nodeDistance = 800.0;

void main() {
    vec3 position = (world * vertex).xyz;
    vec2 pixel = centre.xy + pixelsPerUnit * position.xy;
    vec2 ndc = 2.0 * pixel * viewportSize.zw - 1.0;
    // A thin slice of depth at the very front: the axes hide each other, and nothing hides them.
    float depth = clamp((-position.z - nodeDistance) / nodeDistance, -1.0, 1.0);
    gl_Position = vec4(ndc.x, flip * ndc.y, -0.999 + 0.001 * depth, 1.0);
    viewPosition = position;
    viewNormal = mat3(inverseTransposeWorld) * normal;
    givenColour = GivenColour(colour);
}
