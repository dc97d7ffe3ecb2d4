// id: COLOUR_BALANCE
// group: adjust
// description: colour balance
// type: effect

@params
float shadowsRed = 0.0 "shadows: cyan to red" min = -1.0 max = 1.0 increment = 0.01;
float shadowsGreen = 0.0 "shadows: magenta to green" min = -1.0 max = 1.0 increment = 0.01;
float shadowsBlue = 0.1 "shadows: yellow to blue" min = -1.0 max = 1.0 increment = 0.01;
float midtonesRed = 0.1 "midtones: cyan to red" min = -1.0 max = 1.0 increment = 0.01;
float midtonesGreen = 0.0 "midtones: magenta to green" min = -1.0 max = 1.0 increment = 0.01;
float midtonesBlue = -0.05 "midtones: yellow to blue" min = -1.0 max = 1.0 increment = 0.01;
float highlightsRed = 0.05 "highlights: cyan to red" min = -1.0 max = 1.0 increment = 0.01;
float highlightsGreen = 0.0 "highlights: magenta to green" min = -1.0 max = 1.0 increment = 0.01;
float highlightsBlue = -0.1 "highlights: yellow to blue" min = -1.0 max = 1.0 increment = 0.01;
bool preserveLuminosity = true "preserve luminosity";

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
vec3 weights = vec3(0.2126, 0.7152, 0.0722);
float l = dot(rgb, weights);
// Each range has its weight by luminosity; the three add up to one.
float shadows = 1.0 - smoothstep(0.0, 0.5, l);
float highlights = smoothstep(0.5, 1.0, l);
float midtones = 1.0 - shadows - highlights;
vec3 shift = shadows * vec3(shadowsRed, shadowsGreen, shadowsBlue)
    + midtones * vec3(midtonesRed, midtonesGreen, midtonesBlue)
    + highlights * vec3(highlightsRed, highlightsGreen, highlightsBlue);
rgb = clamp(rgb + shift * 0.5, 0.0, 1.0);
if (preserveLuminosity)
    rgb = rgb + (l - dot(rgb, weights));
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
