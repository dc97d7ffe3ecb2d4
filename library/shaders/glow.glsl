// id: GLOW
// group: brush engines
// description: glow
// type: engine

@params
float falloff = 2.0 "falloff" min = 0.5 max = 8.0 increment = 0.1;
float core = 0.3 "core size" min = 0.0 max = 0.9 increment = 0.01;
float intensity = 1.0 "intensity" min = 0.0 max = 2.0 increment = 0.01;
color coreColour = rgb(255, 255, 255) "core colour";

@main
vec2 uv = v_texCoords0;
// A soft radial dab whose middle turns to the core colour.
float d = clamp(length(uv - vec2(0.5)) * 2.0, 0.0, 1.0);
float alpha = clamp(pow(1.0 - d, falloff) * intensity, 0.0, 1.0) * f_flow;
alpha = getStandardClipping(alpha);
if (alpha < 0.004)
    discard;
vec3 colour = mix(getStandardColor(uv, alpha), coreColour.rgb, 1.0 - smoothstep(0.0, max(core, 0.001), d));
f_color = getStandardComposition(colour, alpha);
