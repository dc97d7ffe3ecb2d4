#include "effects/mshaderstream.h"

#include "app/mlogger.h"
#include "app/mutility.h"
#include "effects/mshader.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const char* const translationContext = "Shaders";

QByteArray decodeBase64(const QJsonValue& value, bool* ok)
{
    const QByteArray::FromBase64Result result = QByteArray::fromBase64Encoding(
        value.toString().toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    *ok = bool(result);
    return result ? result.decoded : QByteArray();
}

// Group and description are stored as lower-case keys of the translation
// catalogue; what the user sees is their translation.
QString translatedKey(const QJsonValue& value, const QString& fallback)
{
    QString key = value.toString().toLower();
    if (key.isEmpty())
        key = fallback;
    const QByteArray utf8 = key.toUtf8();
    return QCoreApplication::translate(translationContext, utf8.constData());
}

QImage decodePreview(const QJsonValue& value)
{
    bool ok = false;
    const QByteArray data = decodeBase64(value, &ok);
    if (!ok)
        return QImage();
    return MUtility::imageFromPng(data, MShaderStream::maxPreviewSide,
                                  qint64(MShaderStream::maxPreviewSide) * MShaderStream::maxPreviewSide);
}

} // namespace

MShaderStream::MShaderStream(MShader* shader, QObject* parent) : QObject(parent), m_shader(shader) {}

MShaderStream::~MShaderStream() = default;

bool MShaderStream::load(const QString& fileName)
{
    if (!m_shader)
        return false;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        MLogger::systemError(QStringLiteral("MShaderStream::load"), file.errorString());
        return false;
    }
    const QByteArray bytes = file.readAll();
    file.close();

    // Anything but a JSON object reads as the empty object.
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();

    m_shader->setGroup(translatedKey(object.value(QStringLiteral("group")), QStringLiteral("basics")));
    m_shader->setDescription(
        translatedKey(object.value(QStringLiteral("description")), QStringLiteral("brush shader")));
    m_shader->setId(object.value(QStringLiteral("id")).toString().toUpper());

    bool ok = false;
    const QByteArray source = decodeBase64(object.value(QStringLiteral("source")), &ok);
    m_shader->setSource(QString::fromUtf8(source));

    m_shader->setType(object.value(QStringLiteral("type")).toInt(MShader::EffectShader));

    const QImage preview = decodePreview(object.value(QStringLiteral("preview")));
    if (!preview.isNull())
        m_shader->setPreview(preview);
    return true;
}

bool MShaderStream::save(const QString& fileName)
{
    if (!m_shader)
        return false;
    QJsonObject object;
    object.insert(QStringLiteral("group"), m_shader->group().trimmed().toLower());
    object.insert(QStringLiteral("description"), m_shader->description().trimmed().toLower());
    object.insert(QStringLiteral("id"), m_shader->id().trimmed().toUpper());
    object.insert(QStringLiteral("source"), QString::fromLatin1(m_shader->source().toUtf8().toBase64()));
    object.insert(QStringLiteral("type"), m_shader->type());
    object.insert(QStringLiteral("preview"), MUtility::imageToBase64Png(m_shader->preview()));

    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        MLogger::systemError(QStringLiteral("MShaderStream::save"), file.errorString());
        return false;
    }
    if (file.write(QJsonDocument(object).toJson(QJsonDocument::Indented)) == -1) {
        MLogger::systemError(QStringLiteral("MShaderStream::save"), file.errorString());
        return false;
    }
    return true;
}
