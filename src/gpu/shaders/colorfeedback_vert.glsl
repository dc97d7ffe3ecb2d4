#version 330 core

// A reduced vertex stage for colour sampling: colour and stamp coordinates only.
in vec2 vertexPosition;
in vec4 vertexColor;
in vec2 textureCoordinates0;

uniform mat4 mvp;

out vec4 v_color;
out vec2 v_texCoords0;

void main(void)
{
    v_color = vertexColor;
    v_texCoords0 = textureCoordinates0;
    gl_Position = mvp * vec4(vertexPosition, 0.0, 1.0);
}
