// Where an object's colour comes from.
//
// materialColour with an alpha above 0 is it, and the object has no say. Else objectColour is,
// which the object brings as its custom parameter 0. In either, a negative alpha says that each
// vertex has its own colour. A shader cannot see whether a mesh has such colours: reading them
// where there are none gives black, so the object must say.

uniform vec4 materialColour;
uniform vec4 objectColour;

vec4 GivenColour(vec4 vertexColour) {
    vec4 named = materialColour.a != 0.0 ? materialColour : objectColour;
    return named.a < 0.0 ? vec4(vertexColour.rgb, 1.0) : named;
}
