// id: SHARPEN
// group: blur and sharpen
// description: sharpen
// type: effect

@params
float amount = 0.8 "amount" min = 0.0 max = 3.0 increment = 0.05;
float radius = 1.5 "radius (pixels)" min = 0.5 max = 5.0 increment = 0.5;

@main
// Unsharp mask: the difference to a blurred copy is added back.
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
vec2 texel = vec2(1.0 / f_textureSize);
float reach = clamp(radius, 0.5, 5.0);
float sigma = reach * 0.5;
vec4 sum = vec4(0.0);
float total = 0.0;
for (int j = -5; j <= 5; ++j) {
    for (int i = -5; i <= 5; ++i) {
        float d2 = float(i * i + j * j);
        if (d2 > (reach + 0.5) * (reach + 0.5))
            continue;
        float w = exp(-d2 / (2.0 * sigma * sigma));
        sum += w * texture(f_currentLayerTexture, v_texCoords0 + vec2(float(i), float(j)) * texel);
        total += w;
    }
}
vec4 sharp = c + amount * (c - sum / total);
// The sharpened colour keeps the pixel's own alpha.
vec3 rgb = sharp.a > 0.0 ? sharp.rgb / max(sharp.a, 1.0 / 255.0) : vec3(0.0);
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
