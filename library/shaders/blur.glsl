// id: BLUR
// group: blur and sharpen
// description: blur
// type: effect

@params
float radius = 3.0 "radius (pixels)" min = 0.0 max = 6.0 increment = 0.5;

@main
// Gaussian over premultiplied colour, so that transparent pixels don't
// darken the edges. The reach stops at the tile margin of 6 pixels.
vec2 texel = vec2(1.0 / f_textureSize);
float reach = clamp(radius, 0.0, 6.0);
float sigma = max(reach * 0.5, 0.01);
vec4 sum = vec4(0.0);
float total = 0.0;
for (int j = -6; j <= 6; ++j) {
    for (int i = -6; i <= 6; ++i) {
        float d2 = float(i * i + j * j);
        if (d2 > (reach + 0.5) * (reach + 0.5))
            continue;
        float w = exp(-d2 / (2.0 * sigma * sigma));
        sum += w * texture(f_currentLayerTexture, v_texCoords0 + vec2(float(i), float(j)) * texel);
        total += w;
    }
}
f_color = sum / total * f_opacity;
