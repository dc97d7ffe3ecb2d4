#version 330 core

// Lit geometry: positions and normals in model space, passed on in view space.
in vec3 vertexPosition;
in vec3 vertexNormal;
in vec4 vertexColor;
in vec2 textureCoordinates0;

uniform mat4 mvp;
uniform mat4 modelViewMatrix = mat4(1.0);
uniform mat3 normalMatrix = mat3(1.0);

out vec3 v_position;
out vec3 v_normal;
out vec4 v_color;
out vec2 v_texCoords0;

void main(void)
{
    v_position = vec3(modelViewMatrix * vec4(vertexPosition, 1.0));
    v_normal = normalize(normalMatrix * vertexNormal);
    v_color = vertexColor;
    v_texCoords0 = textureCoordinates0;
    gl_Position = mvp * vec4(vertexPosition, 1.0);
}
