#version 330 core

// A flat fill of a tile. The colour comes unpremultiplied, as a QColor reaches
// a uniform, and is written premultiplied. With f_clipToSelection the tile
// keeps its own texel wherever the selection is empty; any selection alpha
// above zero takes the whole colour.
in vec4 v_color;
in vec2 v_texCoords0;
in vec2 v_texCoords1;
in vec2 v_texCoords2;

uniform sampler2D f_currentLayerTexture;
uniform sampler2D f_selectionLayerTexture;

uniform vec4 f_fillColor = vec4(0.0, 0.0, 0.0, 0.0);
uniform bool f_clipToSelection = false;

out vec4 f_color;

void main(void)
{
    if (f_clipToSelection && texture(f_selectionLayerTexture, v_texCoords0).a == 0.0)
        f_color = texture(f_currentLayerTexture, v_texCoords0);
    else
        f_color = vec4(f_fillColor.rgb * f_fillColor.a, f_fillColor.a);
}
