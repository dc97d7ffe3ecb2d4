#pragma once

#include "document/mtiledlayer.h"

#include <QSet>
#include <QString>

// The layer the user paints on: its tiles hold GPU textures.
class MTextureLayer : public MTiledLayer
{
    Q_OBJECT

public:
    explicit MTextureLayer(QObject* parent = nullptr);
    ~MTextureLayer() override;

    std::unique_ptr<MTile> createTile() override;

    // The id of the last layer file written or read for undo.
    QString backupId() const { return m_backupId; }
    // The tiles a stroke in progress touched (used on the canvas's stroke layer).
    QSet<MTile*>& changedTiles() { return m_changedTiles; }
    const QSet<MTile*>& changedTiles() const { return m_changedTiles; }

    // Frees every tile's texture; needs a current context, and without one
    // leaves the tiles alone.
    void shutDown();
    void clear() override;

    // Writes the whole layer to a new layer file in the temporary directory;
    // the new id goes to backupId. Needs a current context.
    bool saveBackup();
    // Reads the layer file of that id into this layer.
    bool restoreBackup(const QString& id);

private:
    QString m_backupId;
    QSet<MTile*> m_changedTiles;
};
