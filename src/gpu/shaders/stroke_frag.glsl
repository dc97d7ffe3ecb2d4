#version 330 core

// The layer with the running stroke laid over it. Both textures hold
// premultiplied colour and are read at the same place. The stroke's look,
// composition mode included, was settled when its stamps were drawn; here it
// only goes over the layer, or with the eraser takes away from it.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

uniform sampler2D f_currentLayerTexture;
uniform sampler2D f_strokeLayerTexture;

uniform vec2 f_texturePos;
uniform float f_textureSize = 512.0;
uniform vec2 f_paintedRectPos;
uniform float f_paintedRectWidth;
uniform float f_paintedRectHeight;
uniform bool f_clipToPaintedRect = false;
uniform float f_opacity = 1.0;
uniform bool f_eraserMode = false;
uniform float f_strokeOpacity = 1.0;

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
    vec4 layer = texture(f_currentLayerTexture, v_texCoords0);
    vec4 stroke = texture(f_strokeLayerTexture, v_texCoords0);
    float a = stroke.a * f_strokeOpacity;
    vec4 result;
    if (f_eraserMode) {
        if (stroke.a == 0.0)
            result = layer;
        else
            result = layer * (1.0 - a);
    } else {
        result = stroke * f_strokeOpacity + (1.0 - a) * layer;
    }
    f_color = result * f_opacity;
}
