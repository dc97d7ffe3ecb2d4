#version 330 core

// The one vertex record: position, colour, a model matrix that travels with the
// vertex but is not applied, and three sets of texture coordinates.
in vec2 vertexPosition;
in vec4 vertexColor;
in mat4 modelMatrix;
in vec2 textureCoordinates0;
in vec2 textureCoordinates1;
in vec2 textureCoordinates2;

uniform mat4 mvp;

out vec4 v_color;
out vec2 v_texCoords0;
out vec2 v_texCoords1;
out vec2 v_texCoords2;

void main(void)
{
    v_color = vertexColor;
    v_texCoords0 = textureCoordinates0;
    v_texCoords1 = textureCoordinates1;
    v_texCoords2 = textureCoordinates2;
    gl_Position = mvp * vec4(vertexPosition, 0.0, 1.0);
}
