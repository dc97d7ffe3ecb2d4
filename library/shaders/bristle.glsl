// id: BRISTLE
// group: brush engines
// description: bristle
// type: engine

@params
int bristles = 14 "bristles" max = 48 min = 3 increment = 1;
float roughness = 0.6 "roughness" min = 0.0 max = 1.0 increment = 0.01;
float streaks = 0.5 "streaks" min = 0.0 max = 1.0 increment = 0.01;

@functions
float bristleHash(float n)
{
    return fract(sin(n * 91.3458) * 47453.5453);
}

@main
vec2 uv = v_texCoords0;
float alpha = getStandardClipping(getStandardAlpha(uv));
// Bristles run along the stamp's x axis, side by side across y; each has a
// load of its own and a soft edge.
float across = uv.y * float(max(bristles, 1));
float index = floor(across);
float load = mix(1.0, bristleHash(index + 1.0), roughness);
float profile = 1.0 - pow(abs(fract(across) - 0.5) * 2.0, 4.0);
float streak = 1.0 - streaks * rand(vec2(index, floor(uv.x * 8.0)));
alpha *= load * profile * streak;
if (alpha < 0.004)
    discard;
vec3 colour = getStandardColor(uv, alpha) * mix(1.0, 0.8 + 0.2 * bristleHash(index + 7.0), roughness);
f_color = getStandardComposition(colour, alpha);
