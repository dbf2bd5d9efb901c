#version 330 core
// The mask is the picture's alpha.

out vec4 pixel;

void main() { pixel = vec4(1.0); }
