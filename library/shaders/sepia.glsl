// id: SEPIA
// group: colour
// description: sepia
// type: effect

@params
float amount = 1.0 "amount" min = 0.0 max = 1.0 increment = 0.01;

@main
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
// Colour work on straight colour; alpha stays as it is.
vec3 rgb = c.a > 0.0 ? c.rgb / c.a : vec3(0.0);
vec3 toned = vec3(dot(rgb, vec3(0.393, 0.769, 0.189)),
                  dot(rgb, vec3(0.349, 0.686, 0.168)),
                  dot(rgb, vec3(0.272, 0.534, 0.131)));
rgb = mix(rgb, clamp(toned, 0.0, 1.0), amount);
f_color = vec4(clamp(rgb, 0.0, 1.0) * c.a, c.a) * f_opacity;
