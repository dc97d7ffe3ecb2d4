#pragma once

#include "document/mtiledlayer.h"

// The layer the user paints on: its tiles hold GPU textures.
class MTextureLayer : public MTiledLayer
{
    Q_OBJECT

public:
    explicit MTextureLayer(QObject* parent = nullptr);
    ~MTextureLayer() override;

    std::unique_ptr<MTile> createTile() override;

    // Frees every tile's texture; needs a current context, and without one
    // leaves the tiles alone.
    void shutDown();
    void clear() override;
};
