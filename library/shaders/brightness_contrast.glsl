// id: BRIGHTNESS_CONTRAST
// group: adjust
// description: brightness and contrast
// type: effect

@params
float brightness = 0.1 "brightness" min = -1.0 max = 1.0 increment = 0.01;
float contrast = 0.2 "contrast" min = -1.0 max = 1.0 increment = 0.01;

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
rgb += brightness;
// Contrast 1 would be an infinite slope: it stops at 100.
float slope = contrast >= 0.0 ? 1.0 / max(1.0 - contrast, 0.01) : 1.0 + contrast;
rgb = (rgb - 0.5) * slope + 0.5;
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
