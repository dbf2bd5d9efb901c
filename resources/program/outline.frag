#version 330 core
// The outline round what the mask covers.
//
// The mask is looked up on a ring round the pixel. What the ring sees and the pixel itself does not
// is the outline: about two pixels wide, and soft where the looked-up places lie between pixels.

uniform sampler2D mask;
uniform vec4 outlineColour;

in vec2 place;
out vec4 pixel;

const vec2 ring[8] = vec2[8](vec2(1.9, 0.0), vec2(-1.9, 0.0), vec2(0.0, 1.9), vec2(0.0, -1.9),
                             vec2(1.35, 1.35), vec2(-1.35, 1.35), vec2(1.35, -1.35),
                             vec2(-1.35, -1.35));

void main() {
    vec2 step = 1.0 / vec2(textureSize(mask, 0));
    float seen = 0.0;
    for (int i = 0; i < 8; ++i) seen = max(seen, texture(mask, place + step * ring[i]).a);
    float outside = 1.0 - texture(mask, place).a;
    pixel = vec4(outlineColour.rgb, outlineColour.a * seen * outside);
}
