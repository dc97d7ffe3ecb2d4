#include "document/mtexturelayer.h"

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
    MTiledLayer::clear();
}
