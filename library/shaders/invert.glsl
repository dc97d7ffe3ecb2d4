// id: INVERT
// group: colour
// description: invert
// type: effect

@params
float amount = 1.0 "amount" min = 0.0 max = 1.0 increment = 0.01;

@main
// In premultiplied terms the inverse of a colour is alpha minus it.
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
f_color = vec4(mix(c.rgb, vec3(c.a) - c.rgb, amount), c.a) * f_opacity;
