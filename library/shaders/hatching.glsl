// id: HATCHING
// group: brush engines
// description: hatching
// type: engine

@params
float spacing = 5.0 "line spacing (pixels)" max = 40.0 min = 2.0 increment = 0.5;
float lineWidth = 0.4 "line width" min = 0.05 max = 0.95 increment = 0.01;
float angle = 45.0 "angle (degrees)" min = 0.0 max = 180.0 increment = 1.0;
bool crossHatching = false "cross-hatching";

@functions
// 1 on a line, 0 between lines, antialiased over one pixel. Lines lie on
// the canvas, so that overlapping stamps continue the same lines.
float hatch(vec2 p, float degrees)
{
    float a = radians(degrees);
    float pitch = max(spacing, 1.0);
    float t = fract(dot(p, vec2(cos(a), sin(a))) / pitch);
    float d = min(t, 1.0 - t) * 2.0;
    float pixel = 1.0 / pitch;
    return 1.0 - smoothstep(lineWidth - pixel, lineWidth + pixel, d);
}

@main
vec2 uv = v_texCoords0;
float alpha = getStandardClipping(getStandardAlpha(uv));
vec2 p = f_texturePos + v_texCoords1 * f_textureSize;
float lines = hatch(p, angle);
if (crossHatching)
    lines = max(lines, hatch(p, angle + 90.0));
alpha *= lines;
if (alpha < 0.004)
    discard;
f_color = getStandardComposition(getStandardColor(uv, alpha), alpha);
