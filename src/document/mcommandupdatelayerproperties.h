#pragma once

#include "document/mcommand.h"

#include <QByteArray>
#include <QHash>
#include <QVariant>

// Sets properties of a layer by name. Both hashes name the same properties.
class MCommandUpdateLayerProperties : public MCommand
{
public:
    MCommandUpdateLayerProperties(MCanvas* canvas, int layerIndex,
                                  const QHash<QByteArray, QVariant>& oldValues,
                                  const QHash<QByteArray, QVariant>& newValues,
                                  QUndoCommand* parent = nullptr);

    void undo() override;
    void redo() override;

private:
    void apply(bool useNew);

    int m_layerIndex;
    QHash<QByteArray, QVariant> m_oldValues;
    QHash<QByteArray, QVariant> m_newValues;
};
