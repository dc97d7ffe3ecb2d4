// id: EMBOSS
// group: stylize
// description: emboss
// type: effect

@params
float angle = 135.0 "light direction (degrees)" min = 0.0 max = 360.0 increment = 1.0;
float strength = 2.0 "strength" min = 0.0 max = 8.0 increment = 0.1;
float depth = 1.0 "depth (pixels)" min = 0.5 max = 4.0 increment = 0.5;
bool keepColours = false "keep colours";

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
vec2 d = vec2(cos(radians(angle)), -sin(radians(angle))) * clamp(depth, 0.5, 4.0) / f_textureSize;
vec3 weights = vec3(0.2126, 0.7152, 0.0722);
// Premultiplied luminance, so that the outline of the paint is embossed too.
float ahead = dot(texture(f_currentLayerTexture, v_texCoords0 + d).rgb, weights);
float behind = dot(texture(f_currentLayerTexture, v_texCoords0 - d).rgb, weights);
float relief = strength * (ahead - behind);
rgb = keepColours ? rgb + relief : vec3(0.5 + relief);
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
