#version 330 core

// A flat colour: the vertex colour, premultiplied as every target here
// expects, scaled by the opacity.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

uniform vec2 f_texturePos;
uniform float f_textureSize = 512.0;
uniform vec2 f_paintedRectPos;
uniform float f_paintedRectWidth;
uniform float f_paintedRectHeight;
uniform bool f_clipToPaintedRect = false;
uniform float f_opacity = 1.0;

out vec4 f_color;

void main(void)
{
#ifndef M_INSIDE_PAINTED_RECT
    if (f_clipToPaintedRect) {
        float tx = f_texturePos.x + v_texCoords0.s * f_textureSize;
        float ty = f_texturePos.y + v_texCoords0.t * f_textureSize;
        if (tx < f_paintedRectPos.x || tx > f_paintedRectPos.x + f_paintedRectWidth
            || ty < f_paintedRectPos.y || ty > f_paintedRectPos.y + f_paintedRectHeight)
            discard;
    }
#endif
    f_color = vec4(v_color.rgb * v_color.a, v_color.a) * f_opacity;
}
