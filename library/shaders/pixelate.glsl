// id: PIXELATE
// group: stylize
// description: pixelate
// type: effect

@params
int size = 8 "block size (pixels)" max = 12 min = 2 increment = 1;

@main
// Blocks are laid on the canvas grid, so that they line up across tiles. The
// block's centre is never farther than the tile margin from the pixel.
float side = float(clamp(size, 1, 12));
vec2 p = f_texturePos + v_texCoords0 * f_textureSize;
vec2 centre = (floor(p / side) + 0.5) * side;
f_color = textureLod(f_currentLayerTexture, (centre - f_texturePos) / f_textureSize, 0.0) * f_opacity;
