#version 330 core

// What a brush engine's code may use: the stamp's inputs, the values of the
// brush, and the functions of the default engine. An engine's main writes
// f_color, premultiplied, and usually follows the default engine's steps:
//
//     vec2 uv = v_texCoords0;
//     float alpha = getStandardClipping(getStandardAlpha(uv));
//     if (alpha < 0.004)
//         discard;
//     f_color = getStandardComposition(getStandardColor(uv, alpha), alpha);
//
// The blocks under M_NO_BRUSH_TEXTURE, M_NO_ALPHA_UNDER, M_NO_SELECTION_CLIP,
// M_NO_BORDER_COLOR, M_DRY_BRUSH and M_FOREGROUND_OVER are left out of the
// variants that a pass asks for when the uniforms that switch them are off.

// Composition modes. The numbers are those of bsCompositionMode and of the
// brush engines' header.
#define M_FOREGROUNDOVER 0
#define M_BACKGROUNDOVER 1
#define M_CLEAR 2
#define M_FOREGROUND 3
#define M_BACKGROUND 4
#define M_FOREGROUNDIN 5
#define M_BACKGROUNDIN 6
#define M_FOREGROUNDOUT 7
#define M_BACKGROUNDOUT 8
#define M_FOREGROUNDATOP 9
#define M_BACKGROUNDATOP 10
#define M_XOR 11
#define M_PLUS 12
#define M_MULTIPLY 13
#define M_SCREEN 14
#define M_OVERLAY 15
#define M_DARKEN 16
#define M_LIGHTEN 17
#define M_COLORDODGE 18
#define M_COLORBURN 19
#define M_HARDLIGHT 20
#define M_SOFTLIGHT 21
#define M_DIFFERENCE 22
#define M_EXCLUSION 23
#define M_DARKER 24
#define M_LIGHTER 25
#define M_VIVIDLIGHT 26
#define M_PINLIGHT 27
#define M_HSL_HUE 28
#define M_HSL_SATURATION 29
#define M_HSL_COLOR 30
#define M_HSL_LUMINOSITY 31
#define M_DODGEHIGHLIGHT 32
#define M_BURNHIGHLIGHT 33
#define M_DODGEMIDTONE 34
#define M_BURNMIDTONE 35
#define M_DODGESHADOW 36
#define M_BURNSHADOW 37
#define M_USER 1000

// Antialiasing kinds of bsAntialiasing.
#define M_ANTIALIASING 0
#define M_NO_ANTIALIASING 1
#define M_SMOOTHING 2

// Position inside the stamp, 0..1, centre at (0.5, 0.5).
in vec2 v_texCoords0;
// Position inside the current layer's tile, margin included.
in vec2 v_texCoords1;
in vec2 v_texCoords2;
// The stamp's colour, unpremultiplied.
in vec4 v_color;

uniform sampler2D f_currentLayerTexture;
uniform sampler2D f_underLayerTexture;
uniform sampler2D f_brushTexture;
uniform sampler2D f_colorTexture;
uniform sampler2D f_selectionLayerTexture;

uniform float f_radius = 10.0;
uniform float f_hardness = 1.0;
uniform float f_density = 1.0;
uniform float f_flow = 1.0;
// Stroke opacity acts when the stroke is composited, not here.
uniform float f_opacity = 1.0;
uniform int f_compositionMode = 0;
uniform bool f_inheritAlphaCurrent = false;
uniform bool f_inheritAlphaUnder = false;
uniform int f_alphaEquation = 0;
uniform bool f_hasTexture = false;
uniform bool f_preserveTextureColor = false;
uniform float f_colorAbsorbtionRate = 0.0;
uniform float f_colorFlowingRate = 1.0;
uniform int f_antialiasing = 0;
uniform int f_shape = 0;
uniform float f_factor = 1.0;
uniform bool f_useBorderColor = false;
uniform vec4 f_borderColor = vec4(1.0, 1.0, 1.0, 1.0);
uniform bool f_clipToSelection = true;
// Stamps made since the stroke began.
uniform int f_stampCount = 1;
// A new random number for each tile of each batch of stamps, 0 to 1.
uniform float f_random = 1.0;
// The target tile on the canvas: top-left of its outer rectangle, and its size.
uniform vec2 f_texturePos;
uniform float f_textureSize;
uniform vec2 f_paintedRectPos;
uniform float f_paintedRectWidth;
uniform float f_paintedRectHeight;

out vec4 f_color;

vec3 unmultiply(vec4 c)
{
    return c.rgb / max(1.0 / 256.0, c.a);
}

float rand(vec2 v)
{
    return fract(sin(dot(v, vec2(12.9898, 78.233))) * 43758.5453);
}

// ---- Blend functions on unpremultiplied colours: S the stamp, D the layer.

float lum(vec3 c)
{
    return 0.3 * c.r + 0.59 * c.g + 0.11 * c.b;
}

float minChannel(vec3 c)
{
    return min(min(c.r, c.g), c.b);
}

float maxChannel(vec3 c)
{
    return max(max(c.r, c.g), c.b);
}

float sat(vec3 c)
{
    return maxChannel(c) - minChannel(c);
}

vec3 setLum(vec3 base, vec3 l)
{
    float ll = lum(l);
    vec3 c = base + vec3(ll - lum(base));
    float n = minChannel(c);
    float x = maxChannel(c);
    if (n < 0.0)
        return vec3(ll) + (c - vec3(ll)) * ll / (ll - n);
    if (x > 1.0)
        return vec3(ll) + (c - vec3(ll)) * (1.0 - ll) / (x - ll);
    return c;
}

vec3 setLumSat(vec3 base, vec3 s, vec3 l)
{
    float baseSat = sat(base);
    vec3 c = vec3(0.0);
    if (baseSat > 0.0)
        c = (base - vec3(minChannel(base))) * sat(s) / baseSat;
    return setLum(c, l);
}

vec3 blendPlus(vec3 S, vec3 D)
{
    return clamp(S + D, 0.0, 1.0);
}

vec3 blendMultiply(vec3 S, vec3 D)
{
    return S * D;
}

vec3 blendScreen(vec3 S, vec3 D)
{
    return clamp(1.0 - (1.0 - S) * (1.0 - D), 0.0, 1.0);
}

// The dark branch has no factor 2: that is how this mode looks.
vec3 blendOverlay(vec3 S, vec3 D)
{
    vec3 dark = S * D;
    vec3 light = 1.0 - 2.0 * (1.0 - S) * (1.0 - D);
    return mix(light, dark, lessThan(D, vec3(0.5)));
}

vec3 blendDarken(vec3 S, vec3 D)
{
    return min(S, D);
}

vec3 blendLighten(vec3 S, vec3 D)
{
    return max(S, D);
}

vec3 blendColorDodge(vec3 S, vec3 D)
{
    return clamp(D / max(vec3(1.0 / 256.0), 1.0 - S), 0.0, 1.0);
}

vec3 blendColorBurn(vec3 S, vec3 D)
{
    return clamp(1.0 - (1.0 - D) / max(vec3(1.0 / 256.0), S), 0.0, 1.0);
}

vec3 blendHardLight(vec3 S, vec3 D)
{
    vec3 light = 1.0 - (1.0 - 2.0 * (S - 0.5)) * (1.0 - D);
    vec3 dark = 2.0 * D * S;
    return mix(dark, light, greaterThan(S, vec3(0.5)));
}

vec3 blendSoftLight(vec3 S, vec3 D)
{
    return D * ((1.0 - D) * S + (1.0 - (1.0 - D) * (1.0 - S)));
}

vec3 blendDifference(vec3 S, vec3 D)
{
    return abs(S - D);
}

vec3 blendExclusion(vec3 S, vec3 D)
{
    return clamp(S + D - 2.0 * S * D, 0.0, 1.0);
}

vec3 blendDarker(vec3 S, vec3 D)
{
    return lum(D) > lum(S) ? S : D;
}

vec3 blendLighter(vec3 S, vec3 D)
{
    return lum(D) > lum(S) ? D : S;
}

vec3 blendVividLight(vec3 S, vec3 D)
{
    vec3 dark = clamp(1.0 - (1.0 - D) / (2.0 * S), 0.0, 1.0);
    vec3 light = clamp(D / (2.0 * (1.0 - S)), 0.0, 1.0);
    return mix(light, dark, lessThan(S, vec3(0.5)));
}

vec3 blendPinLight(vec3 S, vec3 D)
{
    vec3 result = D;
    for (int i = 0; i < 3; ++i) {
        if (2.0 * S[i] - 1.0 > D[i])
            result[i] = clamp(2.0 * S[i] - 1.0, 0.0, 1.0);
        else if (S[i] < 0.5 * D[i])
            result[i] = clamp(2.0 * S[i], 0.0, 1.0);
    }
    return result;
}

vec3 blendHue(vec3 S, vec3 D)
{
    return setLumSat(S, D, D);
}

vec3 blendSaturation(vec3 S, vec3 D)
{
    return setLumSat(D, S, D);
}

vec3 blendColor(vec3 S, vec3 D)
{
    return setLum(S, D);
}

vec3 blendLuminosity(vec3 S, vec3 D)
{
    return setLum(D, S);
}

// The dodge and burn family ignores the stamp's colour. Midtone dodge takes the
// factor whole, the others a third of it.
vec3 blendDodgeHighlight(vec3 D)
{
    return D * (1.0 + f_factor / 3.0);
}

vec3 blendBurnHighlight(vec3 D)
{
    return D * (1.0 - f_factor / 3.0);
}

vec3 blendDodgeMidtone(vec3 D)
{
    return pow(D, vec3(1.0 / (1.0 + f_factor)));
}

vec3 blendBurnMidtone(vec3 D)
{
    return pow(D, vec3(1.0 + f_factor / 3.0));
}

vec3 blendDodgeShadow(vec3 D)
{
    float k = f_factor / 3.0;
    return D + k - D * k;
}

vec3 blendBurnShadow(vec3 D)
{
    float k = f_factor / 3.0;
    return (D - k) * (1.0 - k);
}

// ---- Alpha of the stamp.

float getAlphaTexture(vec2 uv)
{
    return texture(f_brushTexture, uv).a;
}

// The brush texture's alpha read as a distance field: the edge sharpens as the
// brush grows.
float getAlphaSmoothTexture(vec2 uv)
{
    float scale = clamp((f_radius - 5.0) / (200.0 - 5.0), 0.0, 1.0);
    return smoothstep(0.35 + scale * 0.12, 0.65 - scale * 0.12, getAlphaTexture(uv));
}

float getAlphaAntialiasedTexture(vec2 uv)
{
    float pixel = 1.0 / (2.0 * f_radius);
    float sampleStep = pixel / 8.0;
    vec2 origin = uv - vec2(pixel / 2.0) + vec2(sampleStep / 2.0);
    float sum = 0.0;
    for (int i = 0; i < 8; ++i)
        for (int j = 0; j < 8; ++j)
            sum += getAlphaTexture(origin + vec2(i, j) * sampleStep);
    return sum / 64.0;
}

// The distance measure of a shape at q = |uv - 0.5|: (qx^p + qy^p) / (2 * 0.5^p),
// with p = 2 for the ellipse and 7 for the rounded rectangle. Written with
// products: pow with an exponent known only when the program runs is slow.
float shapeDistance(vec2 q, int shape)
{
    if (shape == 0)
        return 2.0 * dot(q, q);
    vec2 q2 = q * q;
    vec2 q7 = q2 * q2 * q2 * q;
    return (q7.x + q7.y) * 64.0;
}

float getAlphaShape(vec2 uv, int shape, float hardness)
{
    float d = shapeDistance(abs(uv - 0.5), shape);
    float inner = hardness / 2.0;
    const float outer = 0.5;
    if (d < inner)
        return hardness;
    if (d < outer)
        return mix(hardness, 0.0, smoothstep(inner, outer, d));
    return 0.0;
}

float getAlphaAntialiasedShape(vec2 uv, int shape, float hardness)
{
    float pixel = 1.0 / (2.0 * f_radius);
    float sampleStep = pixel / 8.0;
    vec2 origin = uv - vec2(pixel / 2.0) + vec2(sampleStep / 2.0);
    // Where all the samples lie on one side of the soft edge they are all
    // equal, and so is their mean: only pixels on the edge are sampled.
    vec2 low = origin - 0.5;
    vec2 high = origin + vec2(7.0 * sampleStep) - 0.5;
    float nearest = shapeDistance(max(max(low, -high), 0.0), shape);
    float farthest = shapeDistance(max(abs(low), abs(high)), shape);
    if (farthest < hardness / 2.0)
        return hardness;
    if (nearest >= 0.5)
        return 0.0;
    float sum = 0.0;
    for (int i = 0; i < 8; ++i)
        for (int j = 0; j < 8; ++j)
            sum += getAlphaShape(origin + vec2(i, j) * sampleStep, shape, hardness);
    return sum / 64.0;
}

float getAlphaSmoothShape(vec2 uv, int shape, float hardness)
{
    return getAlphaShape(uv, shape, hardness);
}

float getStandardAlpha(vec2 uv)
{
    float alpha;
#ifndef M_NO_BRUSH_TEXTURE
    if (f_hasTexture) {
        if (f_antialiasing == M_NO_ANTIALIASING)
            alpha = getAlphaTexture(uv);
        else if (f_antialiasing == M_SMOOTHING)
            alpha = getAlphaSmoothTexture(uv);
        else
            alpha = getAlphaAntialiasedTexture(uv);
    } else
#endif
    {
        // Unsmoothed, a shape is fully hard for an engine, whatever
        // f_hardness says; the default engine keeps the brush's hardness.
        if (f_antialiasing == M_NO_ANTIALIASING)
#ifdef M_DEFAULT_ENGINE
            alpha = getAlphaShape(uv, f_shape, f_hardness);
#else
            alpha = getAlphaShape(uv, f_shape, 1.0);
#endif
        else if (f_antialiasing == M_SMOOTHING)
            alpha = getAlphaSmoothShape(uv, f_shape, f_hardness);
        else
            alpha = getAlphaAntialiasedShape(uv, f_shape, f_hardness);
    }

    // The density pattern depends on stamp coordinates only: all stamps share it.
    if (f_density < 1.0 && f_density < rand(uv))
        alpha = 0.0;
    alpha *= f_flow;

#ifndef M_NO_ALPHA_UNDER
    if (f_inheritAlphaUnder) {
        float under = texture(f_underLayerTexture, v_texCoords1).a;
        alpha *= f_alphaEquation == 1 ? under : 1.0 - under;
    }
#endif
    return alpha;
}

float getStandardClipping(float alpha)
{
#ifndef M_NO_SELECTION_CLIP
    if (f_clipToSelection)
        return alpha * texture(f_selectionLayerTexture, v_texCoords1).a;
#endif
    return alpha;
}

// ---- Colour of the stamp.

vec3 getStandardColor(vec2 uv, float alpha)
{
    vec3 color = v_color.rgb;
#ifndef M_NO_BRUSH_TEXTURE
    if (f_hasTexture && f_preserveTextureColor)
        color = mix(unmultiply(texture(f_brushTexture, uv)), v_color.rgb, 0.5);
#endif

    // A border colour replaces everything above, texture colour included.
#ifndef M_NO_BORDER_COLOR
    if (f_useBorderColor) {
        float l = length(uv - vec2(0.5, 0.5));
        if (l < 0.3)
            color = v_color.rgb;
        else
            color = mix(v_color.rgb, f_borderColor.rgb, smoothstep(0.3, 0.5, l));
    }
#endif

    // A wet brush lays the paint it picked up over its own colour.
#ifndef M_DRY_BRUSH
    if (f_colorAbsorbtionRate != 0.0) {
        vec3 picked = unmultiply(textureLod(f_colorTexture, uv, 0.0));
        color = mix(picked, color, f_colorFlowingRate);
    }
#endif
    return color;
}

// ---- Composition with the layer as it was when the stroke began.

vec3 blendByMode(int mode, vec3 S, vec3 D)
{
    if (mode == M_PLUS)
        return blendPlus(S, D);
    if (mode == M_MULTIPLY)
        return blendMultiply(S, D);
    if (mode == M_SCREEN)
        return blendScreen(S, D);
    if (mode == M_OVERLAY)
        return blendOverlay(S, D);
    if (mode == M_DARKEN)
        return blendDarken(S, D);
    if (mode == M_LIGHTEN)
        return blendLighten(S, D);
    if (mode == M_COLORDODGE)
        return blendColorDodge(S, D);
    if (mode == M_COLORBURN)
        return blendColorBurn(S, D);
    if (mode == M_HARDLIGHT)
        return blendHardLight(S, D);
    if (mode == M_SOFTLIGHT)
        return blendSoftLight(S, D);
    if (mode == M_DIFFERENCE)
        return blendDifference(S, D);
    if (mode == M_EXCLUSION)
        return blendExclusion(S, D);
    if (mode == M_DARKER)
        return blendDarker(S, D);
    if (mode == M_LIGHTER)
        return blendLighter(S, D);
    if (mode == M_VIVIDLIGHT)
        return blendVividLight(S, D);
    if (mode == M_PINLIGHT)
        return blendPinLight(S, D);
    if (mode == M_HSL_HUE)
        return blendHue(S, D);
    if (mode == M_HSL_SATURATION)
        return blendSaturation(S, D);
    if (mode == M_HSL_COLOR)
        return blendColor(S, D);
    if (mode == M_HSL_LUMINOSITY)
        return blendLuminosity(S, D);
    if (mode == M_DODGEHIGHLIGHT)
        return blendDodgeHighlight(D);
    if (mode == M_BURNHIGHLIGHT)
        return blendBurnHighlight(D);
    if (mode == M_DODGEMIDTONE)
        return blendDodgeMidtone(D);
    if (mode == M_BURNMIDTONE)
        return blendBurnMidtone(D);
    if (mode == M_DODGESHADOW)
        return blendDodgeShadow(D);
    if (mode == M_BURNSHADOW)
        return blendBurnShadow(D);
    // Modes without a formula of their own act as foreground over.
    return S;
}

// The SVG compositing formulas, with the destination term left to the GL
// blend factors (Z = 0).
vec4 getStandardComposition(vec3 Sc, float alpha)
{
    // Foreground over reduces to the source whatever the layer holds: the
    // layer needn't be read.
#ifdef M_FOREGROUND_OVER
    return vec4(Sc * alpha, alpha);
#else
    if (f_compositionMode == M_FOREGROUNDOVER && !f_inheritAlphaCurrent)
        return vec4(Sc * alpha, alpha);
    vec4 Dca = texture(f_currentLayerTexture, v_texCoords1);
    vec4 Sca = vec4(Sc * alpha, alpha);
    vec3 Dc = unmultiply(Dca);

    vec3 c = Sc;
    float X = 1.0;
    float Y = 1.0;
    const float Z = 0.0;
    if (f_compositionMode != M_FOREGROUNDOVER) {
        if (f_compositionMode == M_FOREGROUNDIN) {
            Y = 0.0;
        } else if (f_compositionMode == M_FOREGROUNDOUT) {
            c = vec3(0.0);
            X = 0.0;
        } else {
            c = blendByMode(f_compositionMode, Sc, Dc);
        }
    }
    // Nothing lands outside the layer's existing paint.
    if (f_inheritAlphaCurrent)
        Y = 0.0;

    vec3 rgb = c * Sca.a * Dca.a + Y * Sca.rgb * (1.0 - Dca.a) + Z * Dca.rgb * (1.0 - Sca.a);
    float a = X * Sca.a * Dca.a + Y * Sca.a * (1.0 - Dca.a) + Z * Dca.a * (1.0 - Sca.a);
    return vec4(rgb, a);
#endif
}
