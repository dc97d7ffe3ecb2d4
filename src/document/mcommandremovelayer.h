#pragma once

#include "document/mcommand.h"

#include <QString>

// Removes a layer. Its pixels and saved properties wait in a layer file until
// the command dies; undo rebuilds a new layer object from that file.
class MCommandRemoveLayer : public MCommand
{
public:
    MCommandRemoveLayer(MCanvas* canvas, int layerIndex, QUndoCommand* parent = nullptr);
    ~MCommandRemoveLayer() override;

    void undo() override;
    void redo() override;

    QString layerId() const { return m_layerId; }

private:
    int m_layerIndex;
    QString m_layerId;
};
