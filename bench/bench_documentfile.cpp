// Save and load rates of a document against a plain copy of a file of the
// same size on the same disk, and the time to end a stroke that touched 1, 10
// and 50 tiles. Run on demand; it prints its figures and asserts nothing.

#include "app/mapplication.h"
#include "app/mutility.h"
#include "document/mcanvas.h"
#include "document/mcommandsetpaintedrect.h"
#include "document/mcommandupdatetile.h"
#include "document/mtexturetile.h"
#include "gpu/mopengl.h"

#include <QDir>
#include <QElapsedTimer>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QUndoStack>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <unistd.h>

namespace {

constexpr int tileBytes = 512 * 512 * 4;

QByteArray content(quint32 seed)
{
    QByteArray bytes(tileBytes, Qt::Uninitialized);
    QRandomGenerator random(seed);
    auto* words = reinterpret_cast<quint32*>(bytes.data());
    for (int i = 0; i < tileBytes / 4; ++i)
        words[i] = random.generate() | 0xff000000u;
    return bytes;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

double megabytesPerSecond(qint64 bytes, double ms)
{
    return ms > 0 ? bytes / (1024.0 * 1024.0) / (ms / 1000.0) : 0.0;
}

void finish()
{
    if (QOpenGLContext* context = QOpenGLContext::currentContext())
        context->functions()->glFinish();
}

// A copy of the file through the page cache, as a file manager makes one.
double timeCopy(const QString& from, const QString& to)
{
    QFile::remove(to);
    QElapsedTimer timer;
    timer.start();
    QFile::copy(from, to);
    return timer.nsecsElapsed() / 1e6;
}

// The same number of bytes written and flushed to the disk, as the save does.
double timeDurableWrite(const QString& path, const QByteArray& bytes)
{
    QFile::remove(path);
    QElapsedTimer timer;
    timer.start();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 0.0;
    file.write(bytes);
    file.flush();
    ::fsync(file.handle());
    file.close();
    return timer.nsecsElapsed() / 1e6;
}

void benchSaveLoad(const QString& dir, int layers, int tilesPerLayer)
{
    MCanvas canvas;
    canvas.makeCurrent();
    canvas.removeLayers();
    for (int row = 0; row < layers; ++row) {
        canvas.appendLayer();
        for (int i = 0; i < tilesPerLayer; ++i) {
            auto* tile = static_cast<MTextureTile*>(
                canvas.at(row)->addTile(QPointF((i % 4) * 500 - 750, (i / 4) * 500 - 500)));
            const QByteArray bytes = content(quint32(row * 100 + i));
            if (!tile->isCreated() || !tile->setData(static_cast<const void*>(bytes.constData()))) {
                std::printf("Save/load: a tile could not be made.\n");
                return;
            }
        }
    }
    const QString path = dir + QStringLiteral("/bench.qmd");
    const int repeats = 5;
    std::vector<double> save;
    std::vector<double> load;
    std::vector<double> copy;
    std::vector<double> durable;
    qint64 size = 0;
    for (int r = 0; r < repeats; ++r) {
        QElapsedTimer timer;
        timer.start();
        const bool saved = canvas.save(path);
        save.push_back(timer.nsecsElapsed() / 1e6);
        size = QFileInfo(path).size();
        copy.push_back(timeCopy(path, dir + QStringLiteral("/copy.qmd")));
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        durable.push_back(timeDurableWrite(dir + QStringLiteral("/durable.qmd"), file.readAll()));
        timer.restart();
        const bool loaded = canvas.load(path);
        finish();
        load.push_back(timer.nsecsElapsed() / 1e6);
        if (!saved || !loaded) {
            std::printf("Save/load: failed (code %d).\n", canvas.lastError());
            return;
        }
    }

    // The GPU's share of the save and the load: every tile read back and uploaded.
    std::vector<char> buffer(tileBytes);
    QElapsedTimer timer;
    timer.start();
    for (int row = 0; row < canvas.count(); ++row) {
        for (int i = 0; i < canvas.at(row)->tileCount(); ++i)
            static_cast<MTextureTile*>(canvas.at(row)->tile(i))->toBuffer(buffer.data());
    }
    const double readBack = timer.nsecsElapsed() / 1e6;
    timer.restart();
    for (int row = 0; row < canvas.count(); ++row) {
        for (int i = 0; i < canvas.at(row)->tileCount(); ++i)
            static_cast<MTextureTile*>(canvas.at(row)->tile(i))
                ->setData(static_cast<const void*>(buffer.data()));
    }
    finish();
    const double upload = timer.nsecsElapsed() / 1e6;

    std::printf("Document of %d layers x %d tiles, %.1f MiB, median of %d:\n", layers, tilesPerLayer,
                size / (1024.0 * 1024.0), repeats);
    std::printf("  %-44s %9.1f ms %9.1f MB/s\n", "save (read-back, write, fsync, rename)", median(save),
                megabytesPerSecond(size, median(save)));
    std::printf("  %-44s %9.1f ms %9.1f MB/s\n", "load (read, upload)", median(load),
                megabytesPerSecond(size, median(load)));
    std::printf("  %-44s %9.1f ms %9.1f MB/s\n", "plain copy of the file (QFile::copy)", median(copy),
                megabytesPerSecond(size, median(copy)));
    std::printf("  %-44s %9.1f ms %9.1f MB/s\n", "plain write of as many bytes + fsync", median(durable),
                megabytesPerSecond(size, median(durable)));
    std::printf("  %-44s %9.1f ms %9.1f MB/s\n", "of which GPU read-back of every tile", readBack,
                megabytesPerSecond(size, readBack));
    std::printf("  %-44s %9.1f ms %9.1f MB/s\n", "of which GPU upload of every tile", upload,
                megabytesPerSecond(size, upload));
    QFile::remove(path);
    QFile::remove(dir + QStringLiteral("/copy.qmd"));
    QFile::remove(dir + QStringLiteral("/durable.qmd"));
}

// The end of a stroke as MEndStrokeRunner does it: one macro, one
// MCommandUpdateTile through the "stroke" program per touched stroke tile,
// each stroke tile cleared after, and the page's rectangle.
void benchStrokeEnd(int touched, bool thin)
{
    MCanvas canvas;
    canvas.makeCurrent();
    MTextureLayer* target = canvas.at(0);
    MTextureLayer* stroke = canvas.strokeLayer();
    const QByteArray under = content(7);
    const QByteArray ink = content(8);
    const int repeats = 5;
    std::vector<double> times;
    qint64 fileBytes = 0;
    for (int r = 0; r < repeats; ++r) {
        QList<MTextureTile*> tiles;
        for (int i = 0; i < touched; ++i) {
            const QPointF at((i % 10) * 500 + 250, (i / 10) * 500 + 250);
            auto* tile = static_cast<MTextureTile*>(stroke->addTile(at));
            auto* below = static_cast<MTextureTile*>(target->addTile(at));
            if (!tile->isCreated() || !below->isCreated()) {
                std::printf("Stroke end: a tile could not be made.\n");
                return;
            }
            if (r == 0)
                below->setData(static_cast<const void*>(under.constData()));
            tile->setData(static_cast<const void*>(ink.constData()));
            // A thin stroke crosses the tile in a band 24 pixels high.
            const QRect inner = tile->rect();
            tile->recordChange(thin ? QRectF(inner.left(), inner.center().y() - 12, inner.width(), 24)
                                    : QRectF(tile->outerRect()));
            stroke->changedTiles().insert(tile);
            tiles.append(tile);
        }
        finish();
        QElapsedTimer timer;
        timer.start();
        canvas.beginMacro(QStringLiteral("Brush stroke: bench, #000000"));
        for (MTextureTile* tile : tiles) {
            auto* below = static_cast<MTextureTile*>(target->addTile(QRectF(tile->outerRect()).center()));
            below->isCreated();
            new MCommandUpdateTile(&canvas, 0, below, tile, 1.0, true, false);
            canvas.blitTile(tile, nullptr, 1.0, true);
        }
        new MCommandSetPaintedRect(&canvas, canvas.paintedRect(), canvas.paintedRect());
        canvas.endMacro();
        finish();
        times.push_back(timer.nsecsElapsed() / 1e6);
        stroke->changedTiles().clear();

        const QUndoCommand* step = canvas.undoStack()->command(canvas.undoStack()->count() - 1);
        fileBytes = 0;
        for (int i = 0; step && i < step->childCount(); ++i) {
            if (const auto* update = dynamic_cast<const MCommandUpdateTile*>(step->child(i)))
                fileBytes += QFileInfo(MUtility::tileFilePath(update->undoId())).size() +
                             QFileInfo(MUtility::tileFilePath(update->redoId())).size();
        }
    }
    std::printf("  %3d tiles, %-10s %9.1f ms %8.2f ms/tile %9.0f KiB of backups/tile\n", touched,
                thin ? "thin band" : "whole tile", median(times), median(times) / touched,
                fileBytes / 1024.0 / touched);
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
    if (!MOpenGL::instance()->initialize()) {
        std::printf("No OpenGL context; nothing measured.\n");
        return 1;
    }
    QTemporaryDir dir;
    const QStorageInfo storage(dir.path());
    MCanvas probe;
    probe.makeCurrent();
    std::printf("Renderer: %s\nDisk: %s (%s) at %s; backups in %s\n\n",
                reinterpret_cast<const char*>(probe.context()->functions()->glGetString(GL_RENDERER)),
                storage.device().constData(), storage.fileSystemType().constData(), qPrintable(dir.path()),
                qPrintable(MUtility::tempDir()));

    benchSaveLoad(dir.path(), 4, 12);
    std::printf("\nEnd of a stroke (macro of MCommandUpdateTile through \"stroke\"), median of 5:\n");
    for (int touched : {1, 10, 50}) {
        benchStrokeEnd(touched, true);
        benchStrokeEnd(touched, false);
    }
    return 0;
}
