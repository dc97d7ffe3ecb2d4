// id: NOISE
// group: stylize
// description: noise
// type: effect

@params
float amount = 0.2 "amount" min = 0.0 max = 1.0 increment = 0.01;
bool monochrome = true "monochrome";
float seed = 1.0 "seed" min = 0.0 max = 100.0 increment = 1.0;

@functions
float noiseAt(vec2 v)
{
    return fract(sin(dot(v, vec2(12.9898, 78.233))) * 43758.5453);
}

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
// One value per canvas pixel, so that the grain is the same at every zoom
// and continues across tiles.
vec2 p = floor(f_texturePos + v_texCoords0 * f_textureSize) + vec2(seed * 7.31, seed * 3.17);
vec3 n = monochrome ? vec3(noiseAt(p)) : vec3(noiseAt(p), noiseAt(p + 17.13), noiseAt(p + 43.71));
rgb += (n - 0.5) * amount;
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
