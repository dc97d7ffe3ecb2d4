#version 330 core

// Plain lines: positions only.
in vec2 vertexPosition;

uniform mat4 mvp;

void main(void)
{
    gl_Position = mvp * vec4(vertexPosition, 0.0, 1.0);
}
