#version 330 core

// Major and minor grid lines, antialiased over one pixel, in a coordinate
// system given by a projection of the texture coordinates. Colours are
// premultiplied.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

// From v_texCoords0 to grid space; homogeneous, so that a perspective grid works.
uniform mat3 f_gridProjection = mat3(1.0);
uniform vec2 f_majorSpacing = vec2(100.0, 100.0);
uniform int f_minorDivisions = 4;
uniform float f_majorLineWidth = 1.5;
uniform float f_minorLineWidth = 1.0;
uniform vec4 f_majorColor = vec4(0.0, 0.0, 0.0, 0.6);
uniform vec4 f_minorColor = vec4(0.0, 0.0, 0.0, 0.25);
uniform float f_opacity = 1.0;

out vec4 f_color;

// Coverage of the nearest line of the given spacing, with width in pixels.
float lineCoverage(vec2 position, vec2 spacing, float width)
{
    vec2 cell = position / spacing;
    vec2 distance = abs(fract(cell - 0.5) - 0.5);
    vec2 pixel = max(fwidth(cell), vec2(1e-6));
    vec2 coverage = 1.0 - smoothstep(vec2(0.5 * width - 0.5), vec2(0.5 * width + 0.5), distance / pixel);
    return max(coverage.x, coverage.y);
}

void main(void)
{
    vec3 projected = f_gridProjection * vec3(v_texCoords0, 1.0);
    if (abs(projected.z) < 1e-6)
        discard;
    vec2 position = projected.xy / projected.z;

    float major = lineCoverage(position, f_majorSpacing, f_majorLineWidth);
    float minor = 0.0;
    if (f_minorDivisions > 1)
        minor = lineCoverage(position, f_majorSpacing / float(f_minorDivisions), f_minorLineWidth);

    vec4 color = f_minorColor * minor;
    color = f_majorColor * major + color * (1.0 - f_majorColor.a * major);
    if (color.a <= 0.0)
        discard;
    f_color = color * f_opacity;
}
