#version 330 core

// The outline of a painted selection: selected texels that touch an unselected
// one, in translucent green. f_opacity and f_globalTime are part of the
// drawing family's uniforms and change nothing here.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

uniform sampler2D f_currentLayerTexture;

uniform vec2 f_texturePos;
uniform float f_textureSize = 512.0;
uniform vec2 f_paintedRectPos;
uniform float f_paintedRectWidth;
uniform float f_paintedRectHeight;
uniform bool f_clipToPaintedRect = false;
uniform float f_opacity = 1.0;
uniform float f_globalTime = 0.0;

out vec4 f_color;

void main(void)
{
    if (texture(f_currentLayerTexture, v_texCoords0).a == 0.0)
        discard;
    if (f_clipToPaintedRect) {
        float tx = f_texturePos.x + v_texCoords0.s * f_textureSize;
        float ty = f_texturePos.y + v_texCoords0.t * f_textureSize;
        if (tx < f_paintedRectPos.x || tx > f_paintedRectPos.x + f_paintedRectWidth
            || ty < f_paintedRectPos.y || ty > f_paintedRectPos.y + f_paintedRectHeight)
            discard;
    }
    float step = 1.0 / f_textureSize;
    bool edge = false;
    for (int i = -1; i <= 1; ++i) {
        for (int j = -1; j <= 1; ++j) {
            if (texture(f_currentLayerTexture, v_texCoords0 + vec2(i, j) * step).a == 0.0)
                edge = true;
        }
    }
    if (!edge)
        discard;
    f_color = vec4(0.0, 0.7, 0.0, 0.7);
}
