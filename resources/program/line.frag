#version 330 core
// A pixel of a line or a marker, in its colour as it stands.

#ifdef WIDENED
in vec4 stripColour;
#define GIVEN stripColour
#else
in vec4 lineColour;
#define GIVEN lineColour
#endif

out vec4 pixel;

void main() { pixel = GIVEN; }
