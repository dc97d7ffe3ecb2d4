    // Outside the painted rectangle nothing is written.
    if (f_clipToPaintedRect) {
        float tx = f_texturePos.x + v_texCoords0.s * f_textureSize;
        float ty = f_texturePos.y + v_texCoords0.t * f_textureSize;
        if (!inRect(tx, ty))
            discard;
    }
    // Within a selection the effect shows in proportion to the selection's alpha.
    if (f_clipToSelection) {
        vec4 selection = texture(f_selectionLayerTexture, v_texCoords0);
        vec4 layer = texture(f_currentLayerTexture, v_texCoords0);
        if (selection.a == 0.0)
            f_color = layer;
        else
            f_color = mix(layer, f_color, selection.a);
    }
