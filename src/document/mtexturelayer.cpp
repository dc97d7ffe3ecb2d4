#include "document/mtexturelayer.h"

#include "app/mutility.h"
#include "document/mcanvasreader.h"
#include "document/mcanvaswriter.h"
#include "document/mtexturetile.h"

#include <QDebug>
#include <QFileInfo>
#include <QOpenGLContext>

MTextureLayer::MTextureLayer(QObject* parent) : MTiledLayer(parent)
{
    setType(OpenGLLayer);
}

MTextureLayer::~MTextureLayer() = default;

std::unique_ptr<MTile> MTextureLayer::createTile()
{
    return std::make_unique<MTextureTile>(this);
}

void MTextureLayer::shutDown()
{
    if (!QOpenGLContext::currentContext()) {
        qDebug() << "no current context during shutdown !"
                 << "MTextureLayer::shutDown" << QFileInfo(QStringLiteral(__FILE__)).baseName();
        return;
    }
    const int count = tileCount();
    for (int i = 0; i < count; ++i) {
        if (auto* textureTile = dynamic_cast<MTextureTile*>(tile(i)))
            textureTile->shutDown();
    }
}

void MTextureLayer::clear()
{
    shutDown();
    // The set points into the tree; it must not outlive the tiles.
    m_changedTiles.clear();
    MTiledLayer::clear();
}

bool MTextureLayer::saveBackup()
{
    const QString id = newId();
    if (MCanvasWriter::saveLayerToFile(MUtility::tileFilePath(id), this) != MCanvasWriter::Success)
        return false;
    m_backupId = id;
    return true;
}

bool MTextureLayer::restoreBackup(const QString& id)
{
    if (MCanvasReader::loadLayerFromFile(MUtility::tileFilePath(id), this) != MCanvasReader::Success)
        return false;
    m_backupId = id;
    return true;
}
