#version 330 core
// A vertex of the mask that tells which pixels an object covers.

in vec4 vertex;

uniform mat4 worldViewProjection;

void main() { gl_Position = worldViewProjection * vertex; }
