#version 330 core
// Draws a point as a disc with a dark rim; its outline is geometry, so that it is antialiased.

layout(points) in;
layout(triangle_strip, max_vertices = 48) out;

in vec4 lineColour[];
out vec4 stripColour;

uniform vec4 viewportSize;  // width, height in pixels, and their inverses
uniform float widthPx;

const int corners = 12;
const float rimPx = 1.0;

vec4 Around(vec4 centre, int corner, float radiusPx) {
    float turn = 6.28318530718 * float(corner) / float(corners);
    vec2 away = radiusPx * vec2(cos(turn), sin(turn)) * 2.0 * viewportSize.zw;
    return centre + vec4(away * centre.w, 0.0, 0.0);
}

void EmitDisc(vec4 centre, float radiusPx, vec4 colour) {
    // A strip that zigzags between the two sides fills a convex outline.
    for (int i = 0; i < corners; ++i) {
        int corner = i % 2 == 0 ? i / 2 : corners - (i + 1) / 2;
        gl_Position = Around(centre, corner, radiusPx);
        stripColour = colour;
        EmitVertex();
    }
    EndPrimitive();
}

void main() {
    vec4 centre = gl_in[0].gl_Position;
    if (centre.z + centre.w < 0.0) return;
    EmitDisc(centre, 0.5 * widthPx + rimPx, vec4(0.16, 0.17, 0.19, lineColour[0].a));
    // Nearer by a hair, or the rim would cover the disc.
    centre.z -= 1e-6 * centre.w;
    EmitDisc(centre, 0.5 * widthPx, lineColour[0]);
}
