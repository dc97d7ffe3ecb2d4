#version 330 core

// The default brush engine: one fragment of one stamp. The output is
// premultiplied and accumulates in the stroke tile by GL blending; the stroke
// then reaches the layer through the "stroke" program. Its functions are those
// that brush engines compile with.

#define M_DEFAULT_ENGINE
#include "std_brush_header_frag.glsl"

void main(void)
{
    vec2 uv = v_texCoords0;
    float alpha = getStandardClipping(getStandardAlpha(uv));
    if (alpha < 0.004)
        discard;
    f_color = getStandardComposition(getStandardColor(uv, alpha), alpha);
}
