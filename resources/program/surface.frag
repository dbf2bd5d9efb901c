#version 330 core
// A pixel of a lit surface.

#include "lighting.glsl"

in vec3 viewPosition;
in vec3 viewNormal;
in vec4 givenColour;

uniform vec4 livery;        // a maker's colour; its alpha is how far it replaces the given one
uniform vec4 tint;          // the colour of a state; its alpha is how far it covers the given one
uniform float glow;         // share of the colour that needs no light
uniform float gloss;        // strength of the highlights
uniform float opacity;      // of the surface seen square on
uniform float rimOpacity;   // added where the surface turns away

out vec4 pixel;

// A maker's colour goes over coloured parts and over light ones, which is what a part without a
// colour of its own is. Dark grey and black ones (covers, cables, plates) keep their tone, so that
// a painted machine does not look cast in one piece.
vec3 Liveried(vec3 given) {
    float most = max(given.r, max(given.g, given.b));
    float least = min(given.r, min(given.g, given.b));
    float painted = max(smoothstep(0.15, 0.30, most - least), smoothstep(0.60, 0.72, most));
    return mix(given, livery.rgb, livery.a * painted);
}

// What shows through a state's colour is mostly how light the surface is: mixed as it stands, an
// orange under light blue would turn grey-green, and the state would not be told by its colour.
vec3 Tinted(vec3 given) {
    float lightness = dot(given, vec3(0.299, 0.587, 0.114));
    return mix(mix(given, vec3(lightness), tint.a), tint.rgb, tint.a);
}

void main() {
    vec4 given = givenColour;
#ifdef PAINT
    if (!(given.a > 0.0)) discard;
    given.rgb /= given.a;
#endif
    vec3 n = SideNormal(viewNormal, viewPosition);
    vec3 colour = Tinted(Liveried(given.rgb));
    vec3 lit = mix(Shade(colour, n, viewPosition, gloss), colour, glow);
    float away = 1.0 - clamp(dot(n, -normalize(viewPosition)), 0.0, 1.0);
    pixel = vec4(lit, given.a * clamp(opacity + rimOpacity * away * away, 0.0, 1.0));
}
