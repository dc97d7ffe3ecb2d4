#include "brush/mbrushstream.h"

#include "app/menum.h"
#include "app/mlogger.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushinputinfolist.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/mcurve.h"
#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mvalues.h"

#include <QColor>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>

namespace {

const char* const translationContext = "Brushes";
const int fileVersion = 100;

// Textures are cut to 1000 pixels wide on import and previews are small, so a
// file that claims more is damaged; reading it must not allocate that much.
const int maxImageSide = 8192;
const qint64 maxImagePixels = qint64(4096) * 4096;
// The spline uses the first few points only; more than this is a damaged file.
const int maxCurvePoints = 256;

QImage imageFromBase64(const QJsonValue& value)
{
    return MUtility::imageFromPng(QByteArray::fromBase64(value.toString().toLatin1()), maxImageSide,
                                  maxImagePixels);
}

QString translated(const QString& text)
{
    const QByteArray key = text.toUtf8();
    return QCoreApplication::translate(translationContext, key.constData());
}

// The text of a file key, or of a setting name: "Radius" reads as "radius".
QByteArray firstLowered(const QString& key)
{
    if (key.isEmpty())
        return QByteArray();
    return (key.left(1).toLower() + key.mid(1)).toUtf8();
}

} // namespace

MBrushStream::MBrushStream(MBrush* brush, QObject* parent) : QObject(parent), m_brush(brush) {}

bool MBrushStream::load(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return fromJson(file.readAll());
}

bool MBrushStream::save(const QString& fileName)
{
    if (!m_brush)
        return false;
    const QByteArray data = toJson();
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    return file.write(data) != -1;
}

QByteArray MBrushStream::toJson() const
{
    if (!m_brush)
        return QByteArray();
    QJsonObject document;
    document.insert(QStringLiteral("version"), fileVersion);
    document.insert(QStringLiteral("id"), m_brush->id());
    document.insert(QStringLiteral("group"), m_brush->group().trimmed().toLower());
    document.insert(QStringLiteral("description"), m_brush->description().trimmed().toLower());
    document.insert(QStringLiteral("shaderId"), m_brush->shaderId().trimmed().toUpper());

    const MBrushSettingInfoList* settings = MBrushSettingInfoList::instance();
    QJsonArray quick;
    for (int setting : m_brush->quickSettings())
        quick.append(QString::fromUtf8(settings->propertyName(setting)));
    document.insert(QStringLiteral("quickSettings"), quick);

    document = writeSettings(document);

    const MValues* values = m_brush->shaderValues();
    if (values && values->count() > 0) {
        // The table is a hash: sorted names keep the file the same from save to save.
        QList<QByteArray> names = values->names();
        std::sort(names.begin(), names.end());
        QJsonArray shaderValues;
        for (const QByteArray& name : names) {
            const QVariant value = values->value(name);
            QJsonValue json;
            switch (int(value.type())) {
            case QVariant::Bool:
                json = value.toBool();
                break;
            case QVariant::Int:
                json = value.toInt();
                break;
            case QMetaType::Float:
            case QVariant::Double:
                json = value.toDouble();
                break;
            case QVariant::String:
                json = value.toString();
                break;
            case QVariant::Color:
                json = value.value<QColor>().name();
                break;
            default:
                MLogger::systemError(
                    QStringLiteral("MBrushStream::save"),
                    QStringLiteral("%1: invalid param type").arg(QString::fromLatin1(value.typeName())));
                continue;
            }
            QJsonObject entry;
            entry.insert(QStringLiteral("paramName"), QString::fromUtf8(name));
            entry.insert(QStringLiteral("paramValue"), json);
            shaderValues.append(entry);
        }
        document.insert(QStringLiteral("shaderValues"), shaderValues);
    }

    document.insert(QStringLiteral("texture"), MUtility::imageToBase64Png(m_brush->texture()));
    document.insert(QStringLiteral("preview"), MUtility::imageToBase64Png(m_brush->preview()));
    return QJsonDocument(document).toJson(QJsonDocument::Indented);
}

QJsonObject MBrushStream::writeSettings(QJsonObject document) const
{
    const MBrushInputInfoList* inputs = MBrushInputInfoList::instance();
    for (const MField* field : MBrushSettingInfoList::instance()->fields()) {
        QJsonObject setting;
        setting.insert(QStringLiteral("value"), m_brush->baseValue(field->id));
        for (int input = 0; input < MEnum::biCount; ++input) {
            const MCurve* curve = m_brush->curveOrNull(field->id, input);
            if (curve)
                setting.insert(QString::fromUtf8(inputs->info(input).key), writeCurve(*curve));
        }
        document.insert(QString::fromUtf8(field->name), setting);
    }
    return document;
}

QJsonObject MBrushStream::writeCurve(const MCurve& curve) const
{
    QJsonObject object;
    object.insert(QStringLiteral("modulo"), curve.modulo());
    object.insert(QStringLiteral("yMin"), curve.yMin());
    object.insert(QStringLiteral("yMax"), curve.yMax());
    object.insert(QStringLiteral("interpolationType"), curve.interpolationType());
    QJsonArray points;
    for (const QPointF& point : curve.points())
        points.append(QJsonArray{point.x(), point.y()});
    object.insert(QStringLiteral("points"), points);
    return object;
}

bool MBrushStream::fromJson(const QByteArray& data)
{
    if (!m_brush)
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (document.isNull())
        return false;
    const QJsonObject object = document.object();

    // A key of another type is read as absent, so that a damaged file can't
    // leave a brush without an id.
    const QJsonValue id = object.value(QStringLiteral("id"));
    if (id.isString())
        m_brush->set_id(id.toString().trimmed().toUpper());

    QString description = object.value(QStringLiteral("description")).toString().toLower();
    if (description.isEmpty())
        description = QStringLiteral("brush");
    m_brush->set_description(translated(description));

    const QString shaderId = object.value(QStringLiteral("shaderId")).toString().toUpper();

    QString group = object.value(QStringLiteral("group")).toString().toLower();
    if (group.isEmpty())
        group = QStringLiteral("basics");
    m_brush->set_group(translated(group));

    m_brush->set_version(object.value(QStringLiteral("version")).toInt(0));

    // The quick settings belong to the defaults; a file without the key keeps them.
    m_brush->reset();
    m_brush->resetQuickSettings();
    const MBrushSettingInfoList* settings = MBrushSettingInfoList::instance();
    const QStringList keys = object.keys();
    for (const QString& key : keys) {
        if (key == QLatin1String("quickSettings")) {
            readQuickSettings(object.value(key));
            continue;
        }
        const MField& field = settings->field(firstLowered(key));
        if (field.isNull())
            continue;
        readSetting(field.id, object.value(key).toObject());
    }

    m_brush->shaderValues()->clear();
    // A known engine fills the table with its defaults; an unknown one is
    // kept by name and leaves the brush on the default stamping.
    m_brush->setShaderIdAsRead(shaderId);
    if (MShaderList::instance()->shaderById(shaderId))
        readShaderValues(object.value(QStringLiteral("shaderValues")));

    m_brush->setTexture(imageFromBase64(object.value(QStringLiteral("texture"))));
    const QImage preview = imageFromBase64(object.value(QStringLiteral("preview")));
    if (!preview.isNull())
        m_brush->setPreview(preview);
    return true;
}

void MBrushStream::readSetting(int setting, const QJsonObject& object)
{
    m_brush->setBaseValue(setting, object.value(QStringLiteral("value")).toDouble(0.0));
    const MBrushInputInfoList* inputs = MBrushInputInfoList::instance();
    for (int input = 0; input < MEnum::biCount; ++input) {
        const QString key = QString::fromUtf8(inputs->info(input).key);
        if (key.isEmpty() || !object.contains(key))
            continue;
        MCurve* curve = m_brush->curve(setting, input);
        if (!curve)
            continue;
        const QJsonObject data = object.value(key).toObject();
        curve->setModulo(data.value(QStringLiteral("modulo")).toDouble(0.0));
        curve->setInterpolationType(data.value(QStringLiteral("interpolationType")).toInt(1));

        // Both y bounds are taken together: one at a time would swap a range
        // that lies wholly above the default one. setRange clears the points.
        const QVector<QPointF> defaults = curve->points();
        curve->setRange(curve->xMin(), curve->xMax(), data.value(QStringLiteral("yMin")).toDouble(0.0),
                        data.value(QStringLiteral("yMax")).toDouble(1.0));
        curve->setYMin(curve->yMin());

        const QJsonArray points = data.value(QStringLiteral("points")).toArray();
        if (points.isEmpty()) {
            for (const QPointF& point : defaults)
                curve->addPoint(point);
            continue;
        }
        const int count = std::min(points.size(), maxCurvePoints);
        for (int i = 0; i < count; ++i) {
            const QJsonArray pair = points.at(i).toArray();
            curve->addPoint(QPointF(pair.at(0).toDouble(0.0), pair.at(1).toDouble(0.0)));
        }
    }
}

void MBrushStream::readQuickSettings(const QJsonValue& value)
{
    const MBrushSettingInfoList* settings = MBrushSettingInfoList::instance();
    QVector<int> quick;
    const QJsonArray names = value.toArray();
    for (const QJsonValue& name : names) {
        const MField& field = settings->field(name.toString().toUtf8());
        if (!field.isNull() && !quick.contains(field.id))
            quick.append(field.id);
    }
    m_brush->setQuickSettings(quick);
    if (quick.isEmpty())
        m_brush->resetQuickSettings();
}

void MBrushStream::readShaderValues(const QJsonValue& value)
{
    const MShader* shader = MShaderList::instance()->shaderById(m_brush->shaderId());
    if (!shader)
        return;
    const QJsonArray entries = value.toArray();
    for (const QJsonValue& entry : entries) {
        const QJsonObject object = entry.toObject();
        const QByteArray name = object.value(QStringLiteral("paramName")).toString().toUtf8();
        const MField* field = name.isEmpty() ? nullptr : shader->param(name);
        if (!field)
            continue;
        const QJsonValue paramValue = object.value(QStringLiteral("paramValue"));
        // JSON has one kind of number, read back as a whole number where it
        // is one: the parameter's own type is what the program and the writer take.
        switch (field->type) {
        case QVariant::Color:
            m_brush->shaderValues()->setValue(name, QColor(paramValue.toString()));
            break;
        case QVariant::Double:
            m_brush->shaderValues()->setValue(name, paramValue.toVariant().toDouble());
            break;
        case QVariant::Int:
            m_brush->shaderValues()->setValue(name, paramValue.toVariant().toInt());
            break;
        case QVariant::Bool:
            m_brush->shaderValues()->setValue(name, paramValue.toVariant().toBool());
            break;
        default:
            m_brush->shaderValues()->setValue(name, paramValue.toVariant());
            break;
        }
    }
}
