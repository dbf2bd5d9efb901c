#version 330 core
// A vertex of a lit surface.

#include "given_colour.glsl"

in vec4 vertex;
in vec3 normal;
in vec4 colour;

out vec3 viewPosition;
out vec3 viewNormal;
out vec4 givenColour;

#ifdef INSTANCED
// Rows of the instance's world matrix.
in vec4 uv0;
in vec4 uv1;
in vec4 uv2;

uniform mat4 view;
uniform mat4 viewProjection;

void Place() {
    vec4 world = vec4(dot(uv0, vertex), dot(uv1, vertex), dot(uv2, vertex), 1.0);
    vec3 turned = vec3(dot(uv0.xyz, normal), dot(uv1.xyz, normal), dot(uv2.xyz, normal));
    viewPosition = (view * world).xyz;
    viewNormal = mat3(view) * turned;
    gl_Position = viewProjection * world;
}
#else
uniform mat4 worldView;
uniform mat4 worldViewProjection;
uniform mat3 normalMatrix;

void Place() {
    viewPosition = (worldView * vertex).xyz;
    viewNormal = normalMatrix * normal;
    gl_Position = worldViewProjection * vertex;
}
#endif

#ifdef PAINT
// Paint covers a vertex or does not, whatever positive number its alpha is. Colour is weighted
// by coverage, so that the hidden colour of a bare neighbour does not show in between.
vec4 Given() {
    float covered = colour.a > 0.0 ? 1.0 : 0.0;
    return vec4(colour.rgb * covered, covered);
}
#else
vec4 Given() { return GivenColour(colour); }
#endif

void main() {
    Place();
    givenColour = Given();
}
