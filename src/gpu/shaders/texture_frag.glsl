#version 330 core

// One chosen mipmap level of a texture, scaled by the opacity.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

uniform sampler2D f_texture;
uniform float f_levelOfDetail = 0.0;
uniform float f_opacity = 1.0;

out vec4 f_color;

void main(void)
{
    f_color = textureLod(f_texture, v_texCoords0, f_levelOfDetail) * f_opacity;
}
