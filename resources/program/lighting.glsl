// How a lit surface looks: four lights and an ambient term that rounds what no light reaches.
//
// Everything is in view space. A light's w is 0 (directional) or 1; a light that is switched off
// arrives black and adds nothing.

uniform vec4 lightPosition[4];
uniform vec4 lightDiffuse[4];
uniform vec4 lightSpecular[4];
uniform vec4 ambient;

// The scene names a directional light by the direction that points from the scene to it, and the
// engine hands out the opposite of a light's direction as its position.
vec3 TowardsLight(int i, vec3 position) {
    vec4 light = lightPosition[i];
    vec3 towards = light.w == 0.0 ? -light.xyz : light.xyz - position;
    float far = length(towards);
    return far > 0.0 ? towards / far : vec3(0.0);
}

// The normal on the side that is looked at. The winding says nothing about the side: meshes come
// open, mirrored and badly wound, and a render texture turns the picture upside down. So the side
// is read from how the surface lies in the picture. A vertex without a normal gets the facet's.
vec3 SideNormal(vec3 given, vec3 position) {
    vec3 toEye = -normalize(position);
    vec3 facet = cross(dFdx(position), dFdy(position));
    float area = length(facet);
    facet = area > 0.0 ? facet / area : toEye;  // a line has no facet
    if (dot(facet, toEye) < 0.0) facet = -facet;
    float size = length(given);
    if (!(size > 1e-6)) return facet;
    vec3 n = given / size;
    // Only near the outline does the facet know better; drawn as wires it is noise.
    float facing = dot(n, toEye);
    float side = abs(facing) > 0.2 ? facing : dot(n, facet);
    return side < 0.0 ? -n : n;
}

// Brightness above the knee is pressed together, so that a face turned to all lights at once keeps
// its colour instead of turning white.
vec3 SoftClip(vec3 light) {
    const float knee = 0.85;
    const float room = 0.20;
    vec3 over = max(light - knee, 0.0);
    return min(light, vec3(knee)) + room * (1.0 - exp(-over / room));
}

// wrap: how far light reaches beyond the edge of a light's own half, as a share of the half.
vec3 Shade(vec3 colour, vec3 n, vec3 position, float gloss) {
    const float wrap = 0.25;
    vec3 toEye = -normalize(position);
    float facing = clamp(dot(n, toEye), 0.0, 1.0);
    // What faces up or to the right in the picture is a little lighter, so that the faces of a block
    // differ from wherever it is looked at; what faces the eye too, or the side that no light reaches
    // would sink into the ground's grey.
    vec3 light = ambient.rgb * (1.0 + 0.35 * (n.x + n.y) + 0.25 * facing);
    vec3 shine = vec3(0.0);
    for (int i = 0; i < 4; ++i) {
        vec3 towards = TowardsLight(i, position);
        light += lightDiffuse[i].rgb * max((dot(n, towards) + wrap) / (1.0 + wrap), 0.0);
        float mirror = max(dot(n, normalize(towards + toEye)), 0.0);
        shine += lightSpecular[i].rgb * pow(mirror, 48.0) * step(0.0, dot(n, towards));
    }
    // A trace of it comes back from any surface, or black bodies would have no shape.
    shine += 0.1 * SoftClip(light);
    // A body darkens towards its outline, which sets it off from what lies behind it.
    light *= 1.0 - 0.22 * pow(1.0 - facing, 3.0);
    return colour * SoftClip(light) + gloss * shine;
}
