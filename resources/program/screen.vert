#version 330 core
// A corner of a rectangle that covers the viewport.

in vec4 vertex;
in vec2 uv0;

uniform mat4 worldViewProjection;

out vec2 place;

void main() {
    gl_Position = worldViewProjection * vertex;
    place = uv0;
}
