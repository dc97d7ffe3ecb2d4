// id: LEVELS
// group: adjust
// description: levels
// type: effect

@params
float inputBlack = 0.08 "input black" min = 0.0 max = 1.0 increment = 0.01;
float inputWhite = 0.92 "input white" min = 0.0 max = 1.0 increment = 0.01;
float gamma = 1.0 "gamma" min = 0.1 max = 5.0 increment = 0.01;
float outputBlack = 0.0 "output black" min = 0.0 max = 1.0 increment = 0.01;
float outputWhite = 1.0 "output white" min = 0.0 max = 1.0 increment = 0.01;

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
rgb = clamp((rgb - inputBlack) / max(inputWhite - inputBlack, 0.001), 0.0, 1.0);
rgb = pow(rgb, vec3(1.0 / max(gamma, 0.01)));
rgb = mix(vec3(outputBlack), vec3(outputWhite), rgb);
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
