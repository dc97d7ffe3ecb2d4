// id: EDGE_DETECTION
// group: stylize
// description: edge detection
// type: effect

@params
float strength = 1.5 "strength" min = 0.0 max = 5.0 increment = 0.1;
bool darkLines = false "dark lines on light";

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
vec2 texel = vec2(1.0 / f_textureSize);
vec3 weights = vec3(0.2126, 0.7152, 0.0722);
float l[9];
for (int j = 0; j < 3; ++j) {
    for (int i = 0; i < 3; ++i)
        l[j * 3 + i] = dot(texture(f_currentLayerTexture, v_texCoords0 + vec2(float(i - 1), float(j - 1)) * texel).rgb, weights);
}
// Sobel.
float gx = (l[2] + 2.0 * l[5] + l[8]) - (l[0] + 2.0 * l[3] + l[6]);
float gy = (l[6] + 2.0 * l[7] + l[8]) - (l[0] + 2.0 * l[1] + l[2]);
float edge = clamp(length(vec2(gx, gy)) * strength, 0.0, 1.0);
rgb = vec3(darkLines ? 1.0 - edge : edge);
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
