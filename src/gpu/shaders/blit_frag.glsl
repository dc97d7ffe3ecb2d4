#version 330 core

// A copy from texture to tile. With f_clipToSelection the copy reaches only the
// selected part, in proportion to the selection's alpha.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

uniform sampler2D f_currentLayerTexture;
uniform sampler2D f_selectionLayerTexture;

uniform vec2 f_texturePos;
uniform float f_textureSize = 512.0;
uniform vec2 f_paintedRectPos;
uniform float f_paintedRectWidth;
uniform float f_paintedRectHeight;
uniform bool f_clipToPaintedRect = false;
uniform bool f_clipToSelection = false;
uniform float f_opacity = 1.0;

out vec4 f_color;

void main(void)
{
    if (f_clipToPaintedRect) {
        float tx = f_texturePos.x + v_texCoords0.s * f_textureSize;
        float ty = f_texturePos.y + v_texCoords0.t * f_textureSize;
        if (tx < f_paintedRectPos.x || tx > f_paintedRectPos.x + f_paintedRectWidth
            || ty < f_paintedRectPos.y || ty > f_paintedRectPos.y + f_paintedRectHeight)
            discard;
    }
    vec4 color = texture(f_currentLayerTexture, v_texCoords0) * f_opacity;
    if (f_clipToSelection) {
        float selection = texture(f_selectionLayerTexture, v_texCoords0).a;
        // Below 1% the selection counts as empty: the target keeps what it has.
        if (selection < 0.01)
            discard;
        color *= selection;
    }
    f_color = color;
}
