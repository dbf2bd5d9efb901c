#version 330 core
// An end of a line or the place of a marker, in clip space.

#include "given_colour.glsl"

in vec4 vertex;
in vec4 colour;

uniform vec4 tint;        // the colour of a state; its alpha is how far it covers the given one
uniform float depthPull;  // towards the viewer, as a share of the depth range

out vec4 lineColour;

#ifdef INSTANCED
// Rows of the instance's world matrix.
in vec4 uv0;
in vec4 uv1;
in vec4 uv2;

uniform mat4 viewProjection;

vec4 Place() {
    return viewProjection * vec4(dot(uv0, vertex), dot(uv1, vertex), dot(uv2, vertex), 1.0);
}
#else
uniform mat4 worldViewProjection;

vec4 Place() { return worldViewProjection * vertex; }
#endif

void main() {
    vec4 given = GivenColour(colour);
    lineColour = vec4(mix(given.rgb, tint.rgb, tint.a), given.a);
    gl_Position = Place();
    // A polygon's depth bias does not reach lines, so they bring their own.
    gl_Position.z -= depthPull * gl_Position.w;
}
