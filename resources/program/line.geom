#version 330 core
// Draws a line as a strip of pixels of any width; the core profile promises one pixel only.
//
// With SPOKES the input is triangles, of which one with two equal corners is such a line: that is
// how a mesh for instancing, which must be a triangle list, carries lines.

#ifdef SPOKES
layout(triangles) in;
#else
layout(lines) in;
#endif
layout(triangle_strip, max_vertices = 4) out;

in vec4 lineColour[];
out vec4 stripColour;

uniform vec4 viewportSize;  // width, height in pixels, and their inverses
uniform float widthPx;

void Emit(vec4 position, vec4 colour) {
    gl_Position = position;
    stripColour = colour;
    EmitVertex();
}

// Where the line meets the near plane, if it goes through it from a (in front) to b (behind).
vec4 InFront(vec4 a, vec4 b) {
    float inA = a.z + a.w;
    float inB = b.z + b.w;
    return inB < 0.0 ? mix(b, a, -inB / (inA - inB)) : b;
}

void EmitStrip(vec4 a, vec4 colourA, vec4 b, vec4 colourB) {
    if (a.z + a.w < 0.0 && b.z + b.w < 0.0) return;
    vec4 nearA = InFront(b, a);
    vec4 nearB = InFront(a, b);
    vec2 halfSize = 0.5 * viewportSize.xy;
    vec2 way = (nearB.xy / nearB.w - nearA.xy / nearA.w) * halfSize;
    float size = length(way);
    vec2 along = size > 1e-4 ? way / size : vec2(1.0, 0.0);
    // Each end reaches half a width further, which closes the joints of a bent line. Its depth goes
    // on as along the line: what a line is cut into must not change where it lies.
    float depth = (nearB.z / nearB.w - nearA.z / nearA.w) * min(0.5 * widthPx / max(size, 1e-4), 1.0);
    vec3 reach = vec3(0.5 * widthPx * along / halfSize, depth);
    vec3 aside = vec3(0.5 * widthPx * vec2(-along.y, along.x) / halfSize, 0.0);
    Emit(nearA + vec4((aside - reach) * nearA.w, 0.0), colourA);
    Emit(nearA + vec4((-aside - reach) * nearA.w, 0.0), colourA);
    Emit(nearB + vec4((aside + reach) * nearB.w, 0.0), colourB);
    Emit(nearB + vec4((-aside + reach) * nearB.w, 0.0), colourB);
    EndPrimitive();
}

void main() {
#ifdef SPOKES
    vec4 a = gl_in[0].gl_Position;
    vec4 b = gl_in[1].gl_Position;
    vec4 c = gl_in[2].gl_Position;
    if (b == c || a == c) {
        EmitStrip(a, lineColour[0], b, lineColour[1]);
    } else if (a == b) {
        EmitStrip(b, lineColour[1], c, lineColour[2]);
    } else {
        for (int i = 0; i < 3; ++i) Emit(gl_in[i].gl_Position, lineColour[i]);
        EndPrimitive();
    }
#else
    EmitStrip(gl_in[0].gl_Position, lineColour[0], gl_in[1].gl_Position, lineColour[1]);
#endif
}
