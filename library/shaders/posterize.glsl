// id: POSTERIZE
// group: colour
// description: posterize
// type: effect

@params
int levels = 4 "levels" max = 32 min = 2 increment = 1;

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
float steps = float(max(levels, 2) - 1);
rgb = floor(rgb * steps + 0.5) / steps;
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
