    // Outside the painted rectangle nothing is written. A draw that keeps
    // inside it leaves the test out (see MShaderProgramList::VariantFlag).
#ifndef M_INSIDE_PAINTED_RECT
    if (f_clipToPaintedRect) {
        float tx = f_texturePos.x + v_texCoords0.s * f_textureSize;
        float ty = f_texturePos.y + v_texCoords0.t * f_textureSize;
        if (!inRect(tx, ty))
            discard;
    }
#endif
    // Within a selection the effect shows in proportion to the selection's alpha.
#ifndef M_NO_SELECTION_CLIP
    if (f_clipToSelection) {
        vec4 selection = texture(f_selectionLayerTexture, v_texCoords0);
        vec4 layer = texture(f_currentLayerTexture, v_texCoords0);
        if (selection.a == 0.0)
            f_color = layer;
        else
            f_color = mix(layer, f_color, selection.a);
    }
#endif
