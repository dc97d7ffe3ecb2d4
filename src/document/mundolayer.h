#pragma once

#include "document/mtiledlayer.h"

// The grid of 64-pixel cells inside one texture tile that records which parts
// of the texture changed since its last backup. Its tiles have no texture.
class MUndoLayer : public MTiledLayer
{
    Q_OBJECT

public:
    explicit MUndoLayer(QObject* parent = nullptr);
    ~MUndoLayer() override;

    std::unique_ptr<MTile> createTile() override;
};
