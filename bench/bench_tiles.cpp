// Tile creation and lookup over a growing painted area, and the read-back rate
// of one tile. Run on demand; it prints its figures and asserts nothing.

#include "app/mapplication.h"
#include "document/mquadnode.h"
#include "document/mquadtree.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "document/mtile.h"
#include "gpu/mopengl.h"

#include <QElapsedTimer>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QStandardPaths>

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace {

// The texture layer's geometry (512, margin 6) with plain tiles: the tree does
// the same work, and no GPU memory is spent on a quarter of a million tiles.
class PlainLayer : public MTiledLayer
{
public:
    std::unique_ptr<MTile> createTile() override { return std::make_unique<MTile>(this); }
};

int depth(const MQuadNode* node)
{
    if (!node || node->isLeaf())
        return node ? 1 : 0;
    int deepest = 0;
    for (int i = 0; i < 4; ++i)
        deepest = qMax(deepest, depth(node->child(i)));
    return deepest + 1;
}

void benchTree()
{
    std::printf(
        "Tree: plain tiles of 512 (inner 500), no textures; cells filled row by row around the origin.\n");
    std::printf("%8s %8s %6s %14s %14s %16s\n", "side", "tiles", "depth", "ns/addTile", "ns/tileAt",
                "ns/addTile(hit)");
    for (int side = 1; side <= 256; side *= 2) {
        const int tiles = side * side;
        const int first = -side / 2;
        // Small extents are repeated so that every line times about the same number of calls.
        const int rounds = qMax(1, 262144 / tiles);
        qint64 createNs = 0;
        qint64 lookupNs = 0;
        qint64 hitNs = 0;
        int treeDepth = 0;
        volatile quintptr sink = 0;
        for (int round = 0; round < rounds; ++round) {
            PlainLayer layer;
            QElapsedTimer timer;
            timer.start();
            for (int row = first; row < first + side; ++row) {
                for (int column = first; column < first + side; ++column)
                    sink = sink + quintptr(layer.addTile(QPointF(column * 500 + 250, row * 500 + 250)));
            }
            createNs += timer.nsecsElapsed();

            timer.restart();
            for (int row = first; row < first + side; ++row) {
                for (int column = first; column < first + side; ++column)
                    sink = sink + quintptr(layer.tileAt(QPointF(column * 500 + 100, row * 500 + 400)));
            }
            lookupNs += timer.nsecsElapsed();

            timer.restart();
            for (int row = first; row < first + side; ++row) {
                for (int column = first; column < first + side; ++column)
                    sink = sink + quintptr(layer.addTile(QPointF(column * 500 + 499, row * 500 + 1)));
            }
            hitNs += timer.nsecsElapsed();
            treeDepth = depth(layer.tree()->root());
        }
        const double calls = double(tiles) * rounds;
        std::printf("%8d %8d %6d %14.1f %14.1f %16.1f\n", side, tiles, treeDepth, createNs / calls,
                    lookupNs / calls, hitNs / calls);
    }
}

void benchReadBack()
{
    std::unique_ptr<QOpenGLContext> context(
        MOpenGL::createSharedContext(QOpenGLContext::globalShareContext()));
    std::unique_ptr<QOffscreenSurface> surface(context ? MOpenGL::createSurface(context.get()) : nullptr);
    if (!context || !surface || !context->makeCurrent(surface.get())) {
        std::printf("Read-back: no OpenGL context, skipped.\n");
        return;
    }
    std::printf("Read-back: one 512 x 512 RGBA8 tile on %s.\n",
                reinterpret_cast<const char*>(context->functions()->glGetString(GL_RENDERER)));
    {
        MTextureLayer layer;
        auto* tile = static_cast<MTextureTile*>(layer.addTile(QPointF(250, 250)));
        if (!tile->isCreated()) {
            std::printf("Read-back: the tile's texture could not be made.\n");
            return;
        }
        const qint64 bytes = tile->bufferSize();
        std::vector<uchar> source(static_cast<size_t>(bytes));
        for (size_t i = 0; i < source.size(); ++i)
            source[i] = uchar((i * 2654435761u) >> 13);
        std::vector<uchar> target(static_cast<size_t>(bytes), 0);

        const int repeats = 200;
        QElapsedTimer timer;
        tile->setData(source.data());
        timer.start();
        for (int i = 0; i < repeats; ++i)
            tile->setData(source.data());
        const qint64 uploadNs = timer.nsecsElapsed();

        tile->toBuffer(target.data());
        timer.restart();
        bool ok = true;
        for (int i = 0; i < repeats; ++i)
            ok = tile->toBuffer(target.data()) && ok;
        const qint64 readNs = timer.nsecsElapsed();
        const bool same = std::memcmp(source.data(), target.data(), source.size()) == 0;

        const double megabytes = double(bytes) * repeats / (1024.0 * 1024.0);
        std::printf("  toBuffer: %d reads, %.3f ms each, %.1f MB/s%s\n", repeats, readNs / 1e6 / repeats,
                    megabytes / (readNs / 1e9),
                    ok && same ? " (content verified)" : " (READ FAILED OR DIFFERED)");
        std::printf("  setData(buffer), mipmaps included: %.3f ms each, %.1f MB/s\n",
                    uploadNs / 1e6 / repeats, megabytes / (uploadNs / 1e9));
        layer.shutDown();
    }
    context->doneCurrent();
}

} // namespace

int main(int argc, char** argv)
{
    // Keeps the settings, data and log of the real user out of reach.
    QStandardPaths::setTestModeEnabled(true);
    MApplication::prepareProcess();
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));

    benchTree();
    benchReadBack();
    return 0;
}
