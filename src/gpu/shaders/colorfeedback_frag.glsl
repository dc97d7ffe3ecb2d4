#version 330 core

// The wet colour a brush carries: each sampling pass moves the previous sample
// towards the paint under the brush. Empty canvas counts as white.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

// The previous sample, at v_texCoords0.
uniform sampler2D f_colorTexture;
// The layer under the brush, at v_texCoords1.
uniform sampler2D f_currentLayerTexture;

uniform bool f_clear = false;
uniform float f_colorAbsorbtionRate = 0.01;
uniform float f_colorFlowingRate = 0.0;

out vec4 f_color;

vec3 unmultiply(vec4 c)
{
    return c.rgb / max(1.0 / 256.0, c.a);
}

void main(void)
{
    vec4 lc = texture(f_currentLayerTexture, v_texCoords1);
    vec3 layer = unmultiply(lc);
    vec3 prev = unmultiply(texture(f_colorTexture, v_texCoords0));
    const vec3 white = vec3(1.0, 1.0, 1.0);

    if (f_clear) {
        // A new stroke: a brush that doesn't flow starts loaded with what it
        // touches, one that flows with its own colour.
        if (f_colorFlowingRate == 0.0)
            f_color = lc.a == 0.0 ? vec4(white, 1.0) : vec4(layer, 1.0);
        else
            f_color = v_color;
    } else if (lc.a == 0.0) {
        f_color = vec4(mix(prev, white, f_colorAbsorbtionRate), 1.0);
    } else {
        f_color = vec4(mix(prev, layer, f_colorAbsorbtionRate), 1.0);
    }
}
