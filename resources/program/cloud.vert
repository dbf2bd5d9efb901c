#version 330 core
// A point of a cloud: a small square of fixed size, cheap enough for millions.

#include "given_colour.glsl"

in vec4 vertex;
in vec4 colour;

uniform mat4 worldViewProjection;
uniform float depthPull;  // towards the viewer, as a share of the depth range
uniform float sizePx;

out vec4 lineColour;

void main() {
    lineColour = GivenColour(colour);
    gl_Position = worldViewProjection * vertex;
    gl_Position.z -= depthPull * gl_Position.w;
    gl_PointSize = sizePx;
}
