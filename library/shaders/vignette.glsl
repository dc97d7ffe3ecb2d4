// id: VIGNETTE
// group: stylize
// description: vignette
// type: effect

@params
float radius = 0.75 "radius" min = 0.1 max = 1.5 increment = 0.01;
float softness = 0.6 "softness" min = 0.01 max = 1.5 increment = 0.01;
float strength = 0.8 "strength" min = 0.0 max = 1.0 increment = 0.01;
color shade = rgb(0, 0, 0) "colour";

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
// Distance from the middle of the page, 1 at the middle of each edge.
vec2 halfSize = max(vec2(f_paintedRectWidth, f_paintedRectHeight) * 0.5, vec2(1.0));
vec2 p = f_texturePos + v_texCoords0 * f_textureSize;
float d = length((p - f_paintedRectPos - halfSize) / halfSize);
float k = strength * smoothstep(radius - softness * 0.5, radius + softness * 0.5, d);
rgb = mix(rgb, shade.rgb, k);
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
