// id: GREYSCALE
// group: colour
// description: greyscale
// type: effect

@params
float amount = 1.0 "amount" min = 0.0 max = 1.0 increment = 0.01;

@main
// Luminance is linear in the channels, so it is taken on premultiplied colour.
vec4 c = texture(f_currentLayerTexture, v_texCoords0);
float grey = dot(c.rgb, vec3(0.2126, 0.7152, 0.0722));
f_color = vec4(mix(c.rgb, vec3(grey), amount), c.a) * f_opacity;
