#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "app/mutility.h"
#include "document/mcanvas.h"
#include "document/mcanvasreader.h"
#include "document/mcanvaswriter.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QUndoStack>
#include <QtEndian>

#include <cmath>
#include <cstring>
#include <limits>
#include <map>

#include <unistd.h>

namespace {

using namespace QuillmereTest;

quint32 crc32(const char* data, int size)
{
    quint32 crc = 0xffffffffu;
    for (int i = 0; i < size; ++i) {
        crc ^= uchar(data[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

// One tile of a layer as the test lays it out.
struct TilePlan
{
    QPointF at;
    QRect rect;
    QByteArray pixels;
};

struct LayerPlan
{
    QString name;
    double opacity = 1.0;
    bool locked = false;
    bool visible = true;
    QString shaderId;
    QVector<TilePlan> tiles;
};

// The bytes a document must have, written field by field from the format's
// table, with the offset after every field and the extent of every field
// that isn't pixels.
class Layout
{
public:
    template <typename T> void field(const T& value, const char* name = nullptr)
    {
        const qint64 start = m_bytes.size();
        if (name)
            m_offsets[name] = start;
        QByteArray encoded;
        QDataStream stream(&encoded, QIODevice::WriteOnly);
        stream.setVersion(16);
        stream << value;
        m_bytes += encoded;
        m_fields.append({start, qint64(m_bytes.size())});
        m_boundaries.append(m_bytes.size());
    }
    void pixels(const QByteArray& bytes)
    {
        if (!m_offsets.count("pixels"))
            m_offsets["pixels"] = m_bytes.size();
        m_bytes += bytes;
        m_boundaries.append(m_bytes.size());
    }
    void layer(const LayerPlan& plan, bool first)
    {
        field(plan.name, first ? "name" : nullptr);
        field(plan.opacity);
        field(plan.locked);
        field(plan.visible);
        field(plan.shaderId);
        field(qint32(512), first ? "tileSize" : nullptr);
        field(qint32(6), first ? "tileMargin" : nullptr);
        field(qint32(4), first ? "bytesPerPixel" : nullptr);
        field(qint32(plan.tiles.size()), first ? "layerTileCount" : nullptr);
        field(qint32(tileBytes), first ? "bufferSize" : nullptr);
        for (const TilePlan& tile : plan.tiles) {
            field(tile.rect, first && &tile == &plan.tiles.constFirst() ? "tileRect" : nullptr);
            pixels(tile.pixels);
        }
    }

    const QByteArray& bytes() const { return m_bytes; }
    const QVector<qint64>& boundaries() const { return m_boundaries; }
    const QVector<QPair<qint64, qint64>>& fields() const { return m_fields; }
    qint64 offset(const char* name) const { return m_offsets.at(name); }

private:
    QByteArray m_bytes;
    QVector<qint64> m_boundaries;
    QVector<QPair<qint64, qint64>> m_fields;
    std::map<std::string, qint64> m_offsets;
};

struct DocumentPlan
{
    QRectF paintedRect;
    MEnum::PaperType paperType = MEnum::Colored;
    QColor paperColor;
    QString paperName;
    QImage paperTile;
    bool autoExtent = false;
    double paintMargin = 0.0;
    QVector<LayerPlan> layers;
};

Layout layoutOf(const DocumentPlan& plan)
{
    Layout layout;
    int tiles = 0;
    for (const LayerPlan& layer : plan.layers)
        tiles += layer.tiles.size();
    layout.field(QUuid(QStringLiteral("{CEC50B25-E865-4A4F-9E63-120098E6C0FD}")));
    layout.field(qint32(100));
    layout.field(plan.paintedRect, "paintedRect");
    layout.field(qint32(plan.paperType), "paperType");
    layout.field(plan.paperColor, "paperColor");
    if (plan.paperType == MEnum::Paper) {
        layout.field(plan.paperName);
        layout.field(plan.paperTile, "paperTile");
    }
    layout.field(plan.autoExtent);
    layout.field(plan.paintMargin);
    layout.field(qint32(plan.layers.size()), "layerCount");
    layout.field(qint32(tiles));
    for (const LayerPlan& layer : plan.layers)
        layout.layer(layer, &layer == &plan.layers.constFirst());
    return layout;
}

// A layer's own file: its magic, the version, then the layer as in a document.
Layout layerFileLayout(const LayerPlan& plan)
{
    Layout layout;
    layout.field(QUuid(QStringLiteral("{FF014CB9-2855-4DC1-99C9-97B20357BF83}")));
    layout.field(qint32(100));
    layout.layer(plan, true);
    return layout;
}

TilePlan tileAt(const QPointF& at, quint32 seed)
{
    const int column = int(std::floor(at.x() / 500));
    const int row = int(std::floor(at.y() / 500));
    return {at, QRect(column * 500, row * 500, 500, 500), pattern(seed)};
}

// A canvas holding plan; false when a layer or tile couldn't be made.
bool build(MCanvas& canvas, const DocumentPlan& plan)
{
    if (!canvas.makeCurrent())
        return false;
    canvas.removeLayers();
    for (int row = 0; row < plan.layers.size(); ++row) {
        canvas.appendLayer();
        MTextureLayer* layer = canvas.at(row);
        const LayerPlan& layerPlan = plan.layers.at(row);
        layer->setName(layerPlan.name);
        layer->setOpacity(layerPlan.opacity);
        layer->setLocked(layerPlan.locked);
        layer->setVisible(layerPlan.visible);
        layer->set_shaderId(layerPlan.shaderId);
        for (const TilePlan& tilePlan : layerPlan.tiles) {
            auto* tile = dynamic_cast<MTextureTile*>(layer->addTile(tilePlan.at));
            if (!tile || tile->rect() != tilePlan.rect || !tile->isCreated() ||
                !tile->setData(static_cast<const void*>(tilePlan.pixels.constData())))
                return false;
        }
    }
    canvas.setPaintedRect(plan.paintedRect);
    canvas.setPaperType(plan.paperType);
    canvas.setPaperColor(plan.paperColor);
    if (plan.paperType == MEnum::Paper) {
        canvas.setPaperName(plan.paperName);
        canvas.setPaperTile(plan.paperTile);
    }
    canvas.setAutoExtent(plan.autoExtent);
    canvas.setPaintMargin(plan.paintMargin);
    return canvas.count() == plan.layers.size();
}

QImage paperImage()
{
    QImage image(24, 10, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor(x * 10, y * 25, 90, 255));
    }
    return image;
}

QString registeredEffect()
{
    static QString id;
    if (id.isEmpty())
        id = MShaderList::instance()->addShader(std::make_unique<MShader>())->id();
    return id;
}

// Two layers, tiles either side of the origin, a paper of its own and an effect id.
DocumentPlan richDocument()
{
    // The user's paper of that name differs from the one the document carries.
    QImage userPaper(8, 8, QImage::Format_ARGB32_Premultiplied);
    userPaper.fill(Qt::red);
    userPaper.save(MUtility::directory(MEnum::UserPath, MEnum::PaperDir) + QStringLiteral("grain.png"));

    DocumentPlan plan;
    plan.paintedRect = QRectF(-1210.5, -333.25, 2000, 1500.75);
    plan.paperType = MEnum::Paper;
    plan.paperColor = QColor(11, 22, 33, 200);
    plan.paperName = QStringLiteral("grain.png");
    plan.paperTile = paperImage();
    plan.autoExtent = true;
    plan.paintMargin = 12.5;
    LayerPlan bottom;
    bottom.name = QStringLiteral("Fond « gris »");
    bottom.opacity = 0.75;
    bottom.locked = true;
    bottom.tiles = {tileAt(QPointF(-700, -300), 11), tileAt(QPointF(250, 250), 12),
                    tileAt(QPointF(-1, -1), 13)};
    LayerPlan top;
    top.name = QStringLiteral("Ink");
    top.visible = false;
    top.shaderId = registeredEffect();
    top.tiles = {tileAt(QPointF(-2600, 1200), 14)};
    plan.layers = {bottom, top};
    return plan;
}

// One layer of one tile on a plain paper.
DocumentPlan smallDocument()
{
    DocumentPlan plan;
    plan.paintedRect = QRectF(-50, -40, 100, 80);
    plan.paperColor = Qt::white;
    LayerPlan layer;
    layer.name = QStringLiteral("Layer 1");
    layer.tiles = {tileAt(QPointF(-10, 5), 21)};
    plan.layers = {layer};
    return plan;
}

QString scratchPath(const QString& name)
{
    return QDir::temp().filePath(name);
}

} // namespace

class TestDocumentFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void savedBytesFollowTheTable();
    void loadRestoresEveryField();
    void layerFileFollowsTheTable();
    void cutFiles();
    void invalidFields();
    void paperImageClaims();
    void failedSaveKeepsThePreviousFile();
    void mutatedDocuments();

private:
    QuillmereTest::GLContext m_gl;
};

void TestDocumentFile::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestDocumentFile::savedBytesFollowTheTable()
{
    const DocumentPlan plan = richDocument();
    const QString path = scratchPath(QStringLiteral("rich.qmd"));
    MCanvas canvas;
    QVERIFY(build(canvas, plan));
    QCOMPARE(canvas.paperName(), QStringLiteral("grain.png"));
    QCOMPARE(canvas.at(1)->shaderId(), registeredEffect());
    QVERIFY(canvas.save(path));
    QCOMPARE(canvas.lastError(), 0);

    const QByteArray file = readFile(path);
    const Layout layout = layoutOf(plan);
    QCOMPARE(file.size(), layout.bytes().size());
    QVERIFY(file == layout.bytes());
    // Nothing but the document is left beside it.
    QCOMPARE(QDir::temp().entryList({QStringLiteral("rich.qmd*")}, QDir::Files), QStringList{"rich.qmd"});

    // Saving over it gives the same bytes and keeps the file's permissions.
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    QVERIFY(canvas.save(path));
    QVERIFY(readFile(path) == file);
    const QFile::Permissions classes(0x7077);
    QCOMPARE(QFile::permissions(path) & classes, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
}

void TestDocumentFile::loadRestoresEveryField()
{
    const DocumentPlan plan = richDocument();
    const QString path = scratchPath(QStringLiteral("fields.qmd"));
    {
        MCanvas canvas;
        QVERIFY(build(canvas, plan));
        QVERIFY(canvas.save(path));
    }
    MCanvas loaded;
    QVERIFY(loaded.load(path));
    QVERIFY(loaded.makeCurrent());
    QCOMPARE(loaded.paintedRect(), plan.paintedRect);
    QCOMPARE(loaded.paperType(), plan.paperType);
    QCOMPARE(loaded.paperColor(), plan.paperColor);
    QCOMPARE(loaded.paperName(), plan.paperName);
    // The document's paper, not the user's file of the same name.
    QCOMPARE(loaded.paperTile().convertToFormat(QImage::Format_ARGB32),
             plan.paperTile.convertToFormat(QImage::Format_ARGB32));
    QCOMPARE(loaded.autoExtent(), plan.autoExtent);
    QCOMPARE(loaded.paintMargin(), plan.paintMargin);
    QCOMPARE(loaded.count(), plan.layers.size());
    QCOMPARE(loaded.currentRow(), plan.layers.size() - 1);
    for (int row = 0; row < plan.layers.size(); ++row) {
        const LayerPlan& layerPlan = plan.layers.at(row);
        MTextureLayer* layer = loaded.at(row);
        QCOMPARE(layer->name(), layerPlan.name);
        QCOMPARE(layer->opacity(), layerPlan.opacity);
        QCOMPARE(layer->locked(), layerPlan.locked);
        QCOMPARE(layer->visible(), layerPlan.visible);
        QCOMPARE(layer->shaderId(), layerPlan.shaderId);
        QCOMPARE(layer->tileCount(), layerPlan.tiles.size());
        for (int i = 0; i < layerPlan.tiles.size(); ++i) {
            const TilePlan& tilePlan = layerPlan.tiles.at(i);
            QCOMPARE(layer->tile(i)->rect(), tilePlan.rect);
            QVERIFY2(readBack(layer->tile(i)) == tilePlan.pixels,
                     qPrintable(QStringLiteral("layer %1 tile %2").arg(row).arg(i)));
        }
    }

    // The walk without GL reads the same fields.
    MCanvasReader::CanvasInfo info;
    QCOMPARE(MCanvasReader::readCanvasInfo(path, &info), 0);
    QCOMPARE(info.header.version, 100);
    QCOMPARE(info.header.tileCount, 4);
    QCOMPARE(info.header.paperTile.size(), QSize(24, 10));
    QCOMPARE(info.layers.size(), 2);
    QCOMPARE(info.layers.at(0).tiles, QVector<QRect>({QRect(-1000, -500, 500, 500), QRect(0, 0, 500, 500),
                                                      QRect(-500, -500, 500, 500)}));
    QCOMPARE(info.layers.at(1).header.shaderId, registeredEffect());
    QCOMPARE(info.layers.at(1).header.name, QStringLiteral("Ink"));
}

void TestDocumentFile::layerFileFollowsTheTable()
{
    const DocumentPlan plan = richDocument();
    MCanvas canvas;
    QVERIFY(build(canvas, plan));
    MTextureLayer* source = canvas.at(0);
    QVERIFY(source->saveBackup());
    const QString path = MUtility::tileFilePath(source->backupId());

    // Reading it back is the layer test's.
    QVERIFY(readFile(path) == layerFileLayout(plan.layers.at(0)).bytes());
    QFile::remove(path);
}

void TestDocumentFile::cutFiles()
{
    const DocumentPlan plan = richDocument();
    const Layout layout = layoutOf(plan);
    const QByteArray good = layout.bytes();
    QVector<qint64> cuts = layout.boundaries();
    cuts.removeLast();
    // Inside fields too: the middle of the magic, of the paper image, of a
    // layer's name, of a tile rectangle and of a tile's pixels.
    cuts << 7 << layout.offset("paperTile") + 30 << layout.offset("name") + 6 << layout.offset("tileRect") + 9
         << layout.offset("pixels") + tileBytes / 2 << good.size() - 1;
    const QString path = scratchPath(QStringLiteral("cut.qmd"));
    MCanvas canvas;
    for (qint64 cut : qAsConst(cuts)) {
        QVERIFY(writeFile(path, good.left(int(cut))));
        LogWatch log;
        const QString where = QStringLiteral("cut at %1").arg(cut);
        QVERIFY2(!canvas.load(path), qPrintable(where));
        const int expected = cut < 16 ? 2 : 3;
        QVERIFY2(canvas.lastError() == expected,
                 qPrintable(where + QStringLiteral(": %1").arg(canvas.lastError())));
        QVERIFY2(log.added().contains(QStringLiteral("MCanvasReader::")) &&
                     log.added().contains(QStringLiteral("System error")),
                 qPrintable(where));
        QCOMPARE(canvas.count(), 0);
        QVERIFY(canvas.isNew());
        MCanvasReader::CanvasInfo info;
        QVERIFY2(MCanvasReader::readCanvasInfo(path, &info) == expected, qPrintable(where));
    }
    QVERIFY(writeFile(path, good));
    QVERIFY(canvas.load(path));
    QCOMPARE(canvas.count(), 2);
}

void TestDocumentFile::invalidFields()
{
    const DocumentPlan plan = richDocument();
    const Layout layout = layoutOf(plan);
    const QString path = scratchPath(QStringLiteral("invalid.qmd"));
    MCanvas canvas;
    struct Case
    {
        const char* field;
        qint64 delta;
        QByteArray value;
        QString message;
    };
    auto be32 = [](qint32 value) {
        QByteArray bytes(4, '\0');
        qToBigEndian(value, bytes.data());
        return bytes;
    };
    auto be64 = [](double value) {
        quint64 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        QByteArray bytes(8, '\0');
        qToBigEndian(bits, bytes.data());
        return bytes;
    };
    const QString layerSource = QStringLiteral("MCanvasReader::loadLayerFromStream: System error: ");
    const QString canvasSource = QStringLiteral("MCanvasReader::loadCanvasFromStream: System error: ");
    const auto geometry = [&](int size, int margin, int bytes, qint32 buffer) {
        const QString values = QStringLiteral("size %1, margin %2, bytes %3, buffer %4");
        return layerSource + "Invalid layer geometry: " + values.arg(size).arg(margin).arg(bytes).arg(buffer);
    };
    const qint32 maxInt = std::numeric_limits<qint32>::max();
    const QVector<Case> cases{
        {"tileSize", 0, be32(256), geometry(256, 6, 4, tileBytes)},
        {"tileSize", 0, be32(-512), geometry(-512, 6, 4, tileBytes)},
        {"tileMargin", 0, be32(7), geometry(512, 7, 4, tileBytes)},
        {"bytesPerPixel", 0, be32(3), geometry(512, 6, 3, tileBytes)},
        {"bufferSize", 0, be32(tileBytes - 1), geometry(512, 6, 4, tileBytes - 1)},
        {"bufferSize", 0, be32(maxInt), geometry(512, 6, 4, maxInt)},
        {"layerTileCount", 0, be32(-1), layerSource + "Invalid tile count -1"},
        {"layerTileCount", 0, be32(maxInt), layerSource + "Error during readRawData"},
        {"layerCount", 0, be32(-5), canvasSource + "Invalid layer count -5"},
        {"layerCount", 0, be32(10000000), canvasSource + "Invalid layer count 10000000"},
        {"paperType", 0, be32(7), canvasSource + "Invalid paper type 7"},
        {"paperType", 0, be32(-1), canvasSource + "Invalid paper type -1"},
        // A colour model out of the enumeration.
        {"paperColor", 0, QByteArray(1, char(116)), canvasSource + "Invalid paper color"},
        {"paintedRect", 16, be64(std::numeric_limits<double>::quiet_NaN()),
         canvasSource + "Invalid painted rectangle"},
        {"paintedRect", 0, be64(1e300), canvasSource + "Invalid painted rectangle"},
        // Strings that claim more than the file holds, and half a character.
        {"name", 0, be32(0x7ffffffe), layerSource + "Unexpected end of file"},
        {"name", 0, be32(3), layerSource + "Corrupt data"},
    };
    for (const Case& entry : cases) {
        QByteArray bytes = layout.bytes();
        bytes.replace(int(layout.offset(entry.field) + entry.delta), entry.value.size(), entry.value);
        QVERIFY(writeFile(path, bytes));
        LogWatch log;
        QVERIFY2(!canvas.load(path), qPrintable(entry.message));
        QCOMPARE(canvas.lastError(), 3);
        QVERIFY2(log.added().contains(entry.message), qPrintable(entry.message + "\n" + log.added()));
        QCOMPARE(canvas.count(), 0);
        MCanvasReader::CanvasInfo info;
        QCOMPARE(MCanvasReader::readCanvasInfo(path, &info), 3);
    }

    // A tile far outside the space of tiles: found by its centre, refused.
    QByteArray bytes = layout.bytes();
    const QByteArray farRect = be32(1 << 30) + be32(0) + be32((1 << 30) + 499) + be32(499);
    bytes.replace(int(layout.offset("tileRect")), 16, farRect);
    QVERIFY(writeFile(path, bytes));
    LogWatch log;
    QVERIFY(!canvas.load(path));
    QCOMPARE(canvas.lastError(), 3);
    QVERIFY2(
        log.added().contains(QStringLiteral(
            "MCanvasReader::loadLayerFromStream: System error: Unable to restore tile at 1073741824, 0")),
        qPrintable(log.added()));
    QCOMPARE(canvas.count(), 0);
}

void TestDocumentFile::paperImageClaims()
{
    const DocumentPlan plan = richDocument();
    const Layout layout = layoutOf(plan);
    const QString path = scratchPath(QStringLiteral("paper.qmd"));
    // The PNG follows the image's marker; its header chunk starts 8 bytes in.
    const int png = int(layout.offset("paperTile")) + 4;
    QCOMPARE(layout.bytes().mid(png + 12, 4), QByteArray("IHDR"));
    auto claim = [&](quint32 width, quint32 height) {
        QByteArray bytes = layout.bytes();
        qToBigEndian(width, bytes.data() + png + 16);
        qToBigEndian(height, bytes.data() + png + 20);
        // A correct checksum, so that only the size tells the claim apart.
        qToBigEndian(crc32(bytes.constData() + png + 12, 17), bytes.data() + png + 29);
        return bytes;
    };
    MCanvas canvas;
    const QString source = QStringLiteral("MCanvasReader::loadCanvasFromStream: System error: ");
    const QVector<QPair<QByteArray, QString>> cases{
        // A size a texture could take, but far more than the few hundred
        // bytes of compressed data could ever fill.
        {claim(16384, 16384), source + "Paper image of 16384 x 16384 from "},
        {claim(4000, 3000), source + "Paper image of 4000 x 3000 from "},
        {claim(20000, 10), source + "Invalid paper image: 20000 x 10, 8 bits, colour type 6"},
        {claim(0, 10), source + "Invalid paper image: 0 x 10, 8 bits, colour type 6"},
        {claim(0x80000000u, 0x80000000u), source + "Invalid paper image: 2147483648 x 2147483648"},
    };
    for (const auto& entry : cases) {
        QVERIFY(writeFile(path, entry.first));
        LogWatch log;
        QVERIFY(!canvas.load(path));
        QCOMPARE(canvas.lastError(), 3);
        QVERIFY2(log.added().contains(entry.second), qPrintable(entry.second + "\n" + log.added()));
    }

    // A chunk length beyond the end of the file, and a broken signature.
    QByteArray longChunk = layout.bytes();
    qToBigEndian(quint32(0x7ffffff0), longChunk.data() + png + 33);
    QByteArray badSignature = layout.bytes();
    badSignature[png + 1] = 'Q';
    for (const QByteArray& bytes : {longChunk, badSignature}) {
        QVERIFY(writeFile(path, bytes));
        LogWatch log;
        QVERIFY(!canvas.load(path));
        QCOMPARE(canvas.lastError(), 3);
        QVERIFY2(log.added().contains(source + "Invalid paper image"), qPrintable(log.added()));
    }

    // The true size loads.
    QVERIFY(writeFile(path, claim(24, 10)));
    QVERIFY(canvas.load(path));
    QCOMPARE(canvas.paperTile().size(), QSize(24, 10));
}

void TestDocumentFile::failedSaveKeepsThePreviousFile()
{
    MCanvas canvas;
    QVERIFY(build(canvas, smallDocument()));
    const QByteArray previous("the previous document, which must survive");

    // A name so long that no temporary file can be made beside it.
    QDir dir(scratchPath(QStringLiteral("long")));
    QVERIFY(dir.mkpath(QStringLiteral(".")));
    const QString longPath = dir.filePath(QString(246, QLatin1Char('d')) + QStringLiteral(".qmd"));
    QVERIFY(writeFile(longPath, previous));
    LogWatch log;
    QVERIFY(!canvas.save(longPath));
    // Where the system makes temporary files without a name (O_TMPFILE),
    // the name is only tried when the file is committed, so the failure
    // comes as a failed write rather than a failed open.
    const QString logged = log.added();
    QVERIFY2(
        (canvas.lastError() == 1 &&
         logged.contains(QStringLiteral("MCanvasWriter::saveCanvasToFile: System error: Unable to open %1: ")
                             .arg(longPath))) ||
            (canvas.lastError() == 2 &&
             logged.contains(
                 QStringLiteral("MCanvasWriter::saveCanvasToFile: System error: Unable to write %1: ")
                     .arg(longPath))),
        qPrintable(QStringLiteral("code %1: %2").arg(canvas.lastError()).arg(logged)));
    QCOMPARE(readFile(longPath), previous);
    QCOMPARE(dir.entryList(QDir::Files).size(), 1);
    QVERIFY(canvas.isNew());
    QVERIFY(canvas.undoStack()->count() > 0);

    // A directory that refuses new files. The owner of every permission
    // (root) writes anyway, and there the case cannot be made this way.
    QDir locked(scratchPath(QStringLiteral("locked")));
    QVERIFY(locked.mkpath(QStringLiteral(".")));
    const QString lockedPath = locked.filePath(QStringLiteral("doc.qmd"));
    QVERIFY(writeFile(lockedPath, previous));
    QVERIFY(QFile::setPermissions(locked.path(), QFile::ReadOwner | QFile::ExeOwner));
    if (::access(QFile::encodeName(locked.path()).constData(), W_OK) == 0) {
        qInfo("This user writes into read-only directories; the read-only directory case is not run.");
    } else {
        QVERIFY(!canvas.save(lockedPath));
        QVERIFY(canvas.lastError() == 1 || canvas.lastError() == 2);
        QCOMPARE(readFile(lockedPath), previous);
        QCOMPARE(locked.entryList(QDir::Files).size(), 1);
    }
    QVERIFY(QFile::setPermissions(locked.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

    // The same save to a fine name succeeds and replaces the old file.
    const QString fine = dir.filePath(QStringLiteral("fine.qmd"));
    QVERIFY(writeFile(fine, previous));
    QVERIFY(canvas.save(fine));
    QCOMPARE(readFile(fine), layoutOf(smallDocument()).bytes());
}

void TestDocumentFile::mutatedDocuments()
{
    struct Base
    {
        QByteArray bytes;
        QVector<QPair<qint64, qint64>> fields;
        bool layerFile;
    };
    QVector<Base> bases;
    for (const DocumentPlan& plan : {richDocument(), smallDocument()}) {
        const Layout layout = layoutOf(plan);
        bases.append({layout.bytes(), layout.fields(), false});
    }
    const Layout layerFile = layerFileLayout(smallDocument().layers.at(0));
    bases.append({layerFile.bytes(), layerFile.fields(), true});

    QRandomGenerator random(0x51A7E);
    const QString path = scratchPath(QStringLiteral("mutated.qmd"));
    MCanvas canvas;
    int loaded = 0;
    int refused = 0;
    const int mutations = 360;
    for (int n = 0; n < mutations; ++n) {
        const Base& base = bases.at(n % bases.size());
        QByteArray bytes = base.bytes;
        // Most mutations land in the fields, where a reader can go wrong;
        // the rest anywhere, pixels included.
        auto position = [&]() -> int {
            if (random.bounded(4) == 0)
                return int(random.bounded(quint32(bytes.size())));
            const auto& field = base.fields.at(int(random.bounded(quint32(base.fields.size()))));
            return int(field.first + random.bounded(quint32(field.second - field.first)));
        };
        const int kind = int(random.bounded(3));
        const int edits = 1 + int(random.bounded(3));
        for (int e = 0; e < edits; ++e) {
            const int at = qMin(position(), bytes.size() - 1);
            if (kind == 0) {
                bytes[at] = char(bytes.at(at) ^ char(1 << random.bounded(8)));
            } else if (kind == 1) {
                if (random.bounded(2) == 0)
                    bytes[at] = char(random.bounded(256));
                else
                    bytes.truncate(at);
            } else {
                QByteArray inserted(1 + int(random.bounded(8)), '\0');
                for (char& c : inserted)
                    c = char(random.bounded(256));
                bytes.insert(at, inserted);
            }
            if (bytes.isEmpty())
                break;
        }
        QVERIFY(writeFile(path, bytes));
        const QString where = QStringLiteral("mutation %1, kind %2").arg(n).arg(kind);
        LogWatch log;
        QElapsedTimer timer;
        timer.start();
        if (base.layerFile) {
            MTextureLayer layer;
            QVERIFY(canvas.makeCurrent());
            const int result = MCanvasReader::loadLayerFromFile(path, &layer);
            QVERIFY2(result >= 0 && result <= 3, qPrintable(where));
            QVERIFY2(result == 0 || log.added().contains(QStringLiteral("MCanvasReader::")),
                     qPrintable(where));
            result == 0 ? ++loaded : ++refused;
            layer.clear();
        } else {
            const bool ok = canvas.load(path);
            const int result = canvas.lastError();
            MCanvasReader::CanvasInfo info;
            const int walked = MCanvasReader::readCanvasInfo(path, &info);
            if (ok) {
                ++loaded;
                // What loads, the walk without GL reads alike.
                QVERIFY2(walked == 0, qPrintable(where));
                QCOMPARE(info.layers.size(), canvas.count());
                for (int row = 0; row < canvas.count(); ++row)
                    QCOMPARE(info.layers.at(row).header.name, canvas.at(row)->name());
            } else {
                ++refused;
                QVERIFY2(result == 2 || result == 3, qPrintable(where + QStringLiteral(": %1").arg(result)));
                QVERIFY2(log.added().contains(QStringLiteral("MCanvasReader::")), qPrintable(where));
                QCOMPARE(canvas.count(), 0);
                // The walk refuses too, with the same code, unless only a
                // tile's place was out of reach, which only the load tries.
                QVERIFY2(walked == result || log.added().contains(QStringLiteral("Unable to restore tile")),
                         qPrintable(where + QStringLiteral(": walk %1, load %2").arg(walked).arg(result)));
            }
        }
        QVERIFY2(timer.elapsed() < 20000, qPrintable(where));
    }
    qInfo("%d mutations: %d loaded, %d refused", mutations, loaded, refused);
    // Both ways out were taken, and often.
    QVERIFY(loaded > mutations / 10 && refused > mutations / 4);
}

QUILLMERE_TEST_MAIN(TestDocumentFile)
#include "tst_documentfile.moc"
