#include "cli/mcliinfo.h"

#include "app/menum.h"
#include "document/mcanvasreader.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>
#include <QTextStream>

namespace {

QJsonObject rectObject(const QRectF& rect)
{
    return QJsonObject{{QStringLiteral("x"), rect.x()},
                       {QStringLiteral("y"), rect.y()},
                       {QStringLiteral("width"), rect.width()},
                       {QStringLiteral("height"), rect.height()}};
}

QJsonObject layerObject(int row, const MCanvasReader::LayerInfo& layer)
{
    QJsonArray tiles;
    for (const QRect& rect : layer.tiles)
        tiles.append(rectObject(QRectF(rect)));
    const MCanvasReader::LayerHeader& header = layer.header;
    return QJsonObject{{QStringLiteral("row"), row},
                       {QStringLiteral("name"), header.name},
                       {QStringLiteral("opacity"), header.opacity},
                       {QStringLiteral("locked"), header.locked},
                       {QStringLiteral("visible"), header.visible},
                       {QStringLiteral("shaderId"), header.shaderId},
                       {QStringLiteral("tileCount"), header.tileCount},
                       {QStringLiteral("tiles"), tiles}};
}

} // namespace

QString MCliInfo::usage() const
{
    return QStringLiteral("info DOC.qmd");
}

QString MCliInfo::summary() const
{
    return QStringLiteral("Prints the document's fields and, per layer, its name, opacity, locked, visible, "
                          "effect id (shaderId) and tile rectangles as indented JSON; needs no OpenGL. "
                          "Exit status 0, 1 when the document can't be read.");
}

int MCliInfo::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    if (arguments.size() != 1 || arguments.first().startsWith(QLatin1String("--"))) {
        return usageFailure(err);
    }
    const QString path = arguments.first();
    MCanvasReader::CanvasInfo info;
    const int result = MCanvasReader::readCanvasInfo(path, &info);
    if (result != MCanvasReader::Success) {
        err << "quillmere-cli: cannot read " << path << ": " << readResultText(result) << " (code " << result
            << ")\n";
        return 1;
    }

    const MCanvasReader::CanvasHeader& header = info.header;
    QJsonObject document{
        {QStringLiteral("file"), QFileInfo(path).absoluteFilePath()},
        {QStringLiteral("version"), header.version},
        {QStringLiteral("paintedRect"), rectObject(header.paintedRect)},
        {QStringLiteral("paperType"), header.paperType},
        {QStringLiteral("paperTypeName"),
         QString::fromLatin1(QMetaEnum::fromType<MEnum::PaperType>().valueToKey(header.paperType))},
        {QStringLiteral("paperColor"), header.paperColor.name(QColor::HexArgb)},
        {QStringLiteral("autoExtent"), header.autoExtent},
        {QStringLiteral("paintMargin"), header.paintMargin},
        {QStringLiteral("layerCount"), header.layerCount},
        {QStringLiteral("tileCount"), header.tileCount}};
    // Fields 6 and 7 exist only for a paper.
    if (header.paperType == MEnum::Paper) {
        document.insert(QStringLiteral("paperName"), header.paperName);
        document.insert(QStringLiteral("paperTile"),
                        header.paperTile.isNull()
                            ? QJsonValue()
                            : QJsonValue(QJsonObject{{QStringLiteral("width"), header.paperTile.width()},
                                                     {QStringLiteral("height"), header.paperTile.height()}}));
    }
    QJsonArray layers;
    for (int row = 0; row < info.layers.size(); ++row)
        layers.append(layerObject(row, info.layers.at(row)));
    document.insert(QStringLiteral("layers"), layers);
    out << QJsonDocument(document).toJson(QJsonDocument::Indented);
    out.flush();
    return 0;
}
