// id: HUE_SATURATION_VALUE
// group: adjust
// description: hue, saturation and value
// type: effect

@params
float hue = 30.0 "hue shift (degrees)" min = -180.0 max = 180.0 increment = 1.0;
float saturation = 1.2 "saturation" min = 0.0 max = 3.0 increment = 0.01;
float value = 1.0 "value" min = 0.0 max = 3.0 increment = 0.01;

@functions
vec3 toHsv(vec3 c)
{
    vec4 k = vec4(0.0, -1.0 / 3.0, 2.0 / 3.0, -1.0);
    vec4 p = mix(vec4(c.bg, k.wz), vec4(c.gb, k.xy), step(c.b, c.g));
    vec4 q = mix(vec4(p.xyw, c.r), vec4(c.r, p.yzx), step(p.x, c.r));
    float d = q.x - min(q.w, q.y);
    float e = 1.0e-10;
    return vec3(abs(q.z + (q.w - q.y) / (6.0 * d + e)), d / (q.x + e), q.x);
}

vec3 toRgb(vec3 c)
{
    vec3 p = abs(fract(c.xxx + vec3(1.0, 2.0 / 3.0, 1.0 / 3.0)) * 6.0 - 3.0);
    return c.z * mix(vec3(1.0), clamp(p - 1.0, 0.0, 1.0), c.y);
}

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
vec3 hsv = toHsv(rgb);
hsv.x = fract(hsv.x + hue / 360.0);
hsv.y = clamp(hsv.y * saturation, 0.0, 1.0);
hsv.z = hsv.z * value;
rgb = toRgb(hsv);
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
