// id: THRESHOLD
// group: colour
// description: threshold
// type: effect

@params
float level = 0.5 "level" min = 0.0 max = 1.0 increment = 0.01;
color dark = rgb(0, 0, 0) "dark colour";
color light = rgb(255, 255, 255) "light colour";

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
float l = dot(rgb, vec3(0.2126, 0.7152, 0.0722));
rgb = l >= level ? light.rgb : dark.rgb;
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
