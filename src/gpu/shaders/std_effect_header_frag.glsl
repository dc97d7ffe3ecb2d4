#version 330 core

// What the body of an effect may use. v_texCoords0 runs over the current
// layer's tile; f_texturePos and f_textureSize place that tile on the canvas.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

uniform sampler2D f_currentLayerTexture;
uniform sampler2D f_underLayerTexture;
uniform sampler2D f_paperTexture;
uniform sampler2D f_selectionLayerTexture;
uniform sampler2D f_tilesTextures[8];

uniform vec2 f_texturePos;
uniform float f_textureSize;
uniform vec2 f_paintedRectPos;
uniform float f_paintedRectWidth;
uniform float f_paintedRectHeight;
uniform bool f_clipToPaintedRect = true;
uniform bool f_clipToSelection = false;
uniform float f_opacity = 1.0;
uniform float f_globalTime = 0.0;

out vec4 f_color;

// Inside the painted rectangle, edges included.
bool inRect(float x, float y)
{
    return x >= f_paintedRectPos.x && x <= f_paintedRectPos.x + f_paintedRectWidth
        && y >= f_paintedRectPos.y && y <= f_paintedRectPos.y + f_paintedRectHeight;
}

// Where a coordinate beyond the tile falls in the 3 by 3 neighbourhood.
int tileRow(vec2 texCoord)
{
    if (texCoord.y > 1.0)
        return 2;
    if (texCoord.y < 0.0)
        return 0;
    return 1;
}

int tileCol(vec2 texCoord)
{
    if (texCoord.x > 1.0)
        return 2;
    if (texCoord.x < 0.0)
        return 0;
    return 1;
}

int tileIndex(vec2 texCoord)
{
    return clamp(tileRow(texCoord) * 3 + tileCol(texCoord), 0, 8);
}

vec2 tileTexCoord(vec2 texCoord)
{
    vec2 result = texCoord;
    if (result.x > 1.0)
        result.x -= 1.0;
    else if (result.x < 0.0)
        result.x += 1.0;
    if (result.y > 1.0)
        result.y -= 1.0;
    else if (result.y < 0.0)
        result.y += 1.0;
    return result;
}
