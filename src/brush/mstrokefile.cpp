#include "brush/mstrokefile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cmath>

namespace {

bool fail(QString* error, const QString& message)
{
    if (error)
        *error = message;
    return false;
}

QString place(int stroke, int sample)
{
    return QStringLiteral("stroke %1, sample %2").arg(stroke + 1).arg(sample + 1);
}

// A number of the object under key, default when absent; false for any
// other type or a value outside -limit..limit.
bool number(const QJsonObject& object, const char* key, double limit, double fallback, double* value,
            QString* problem)
{
    const QJsonValue entry = object.value(QLatin1String(key));
    if (entry.isUndefined()) {
        *value = fallback;
        return true;
    }
    if (!entry.isDouble()) {
        *problem = QStringLiteral("\"%1\" is not a number").arg(QLatin1String(key));
        return false;
    }
    const double read = entry.toDouble();
    if (!std::isfinite(read) || std::abs(read) > limit) {
        *problem = QStringLiteral("\"%1\" is out of range (-%2 to %2)").arg(QLatin1String(key)).arg(limit);
        return false;
    }
    *value = read;
    return true;
}

QJsonObject toJson(const MStrokeFile::Sample& sample)
{
    QJsonObject object;
    object.insert(QStringLiteral("x"), sample.x);
    object.insert(QStringLiteral("y"), sample.y);
    object.insert(QStringLiteral("p"), sample.pressure);
    object.insert(QStringLiteral("t"), sample.time);
    object.insert(QStringLiteral("xt"), sample.xTilt);
    object.insert(QStringLiteral("yt"), sample.yTilt);
    return object;
}

} // namespace

bool MStrokeFile::read(const QString& fileName, QVector<Stroke>& strokes, QString* error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return fail(error, QStringLiteral("cannot open %1: %2").arg(fileName, file.errorString()));
    if (file.size() > maximumFileSize)
        return fail(error, QStringLiteral("%1 is larger than %2 bytes").arg(fileName).arg(maximumFileSize));
    return parse(file.readAll(), strokes, error);
}

bool MStrokeFile::parse(const QByteArray& data, QVector<Stroke>& strokes, QString* error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(data, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return fail(error, QStringLiteral("not JSON at byte %1: %2").arg(parseError.offset).arg(parseError.errorString()));
    if (!document.isObject())
        return fail(error, QStringLiteral("the file is not a JSON object"));
    const QJsonValue list = document.object().value(QLatin1String("strokes"));
    if (!list.isArray())
        return fail(error, QStringLiteral("\"strokes\" is missing or not an array"));
    const QJsonArray strokeArray = list.toArray();
    QVector<Stroke> result;
    result.reserve(strokeArray.size());
    for (int s = 0; s < strokeArray.size(); ++s) {
        if (!strokeArray.at(s).isArray())
            return fail(error, QStringLiteral("stroke %1 is not an array").arg(s + 1));
        const QJsonArray samples = strokeArray.at(s).toArray();
        Stroke stroke;
        stroke.reserve(samples.size());
        for (int i = 0; i < samples.size(); ++i) {
            if (!samples.at(i).isObject())
                return fail(error, QStringLiteral("%1 is not an object").arg(place(s, i)));
            const QJsonObject object = samples.at(i).toObject();
            if (!object.contains(QLatin1String("x")) || !object.contains(QLatin1String("y")))
                return fail(error, QStringLiteral("%1 has no \"x\" or no \"y\"").arg(place(s, i)));
            Sample sample;
            QString problem;
            if (!number(object, "x", maximumCoordinate, 0.0, &sample.x, &problem) ||
                !number(object, "y", maximumCoordinate, 0.0, &sample.y, &problem) ||
                !number(object, "p", 1.0, 1.0, &sample.pressure, &problem) ||
                !number(object, "t", maximumTime, i == 0 ? 0.0 : stroke.last().time, &sample.time, &problem) ||
                !number(object, "xt", maximumTilt, 0.0, &sample.xTilt, &problem) ||
                !number(object, "yt", maximumTilt, 0.0, &sample.yTilt, &problem))
                return fail(error, QStringLiteral("%1: %2").arg(place(s, i), problem));
            if (sample.pressure < 0.0)
                return fail(error, QStringLiteral("%1: \"p\" is out of range (0 to 1)").arg(place(s, i)));
            stroke.append(sample);
        }
        result.append(stroke);
    }
    strokes = result;
    return true;
}

bool MStrokeFile::append(const QString& fileName, const Stroke& stroke, QString* error)
{
    QJsonArray strokes;
    if (QFile::exists(fileName)) {
        QFile file(fileName);
        if (!file.open(QIODevice::ReadOnly))
            return fail(error, QStringLiteral("cannot open %1: %2").arg(fileName, file.errorString()));
        const QByteArray data = file.readAll();
        if (!data.trimmed().isEmpty()) {
            QVector<Stroke> existing;
            if (!parse(data, existing, error))
                return false;
            strokes = QJsonDocument::fromJson(data).object().value(QLatin1String("strokes")).toArray();
        }
    }
    QJsonArray samples;
    for (const Sample& sample : stroke)
        samples.append(toJson(sample));
    strokes.append(samples);
    QJsonObject root;
    root.insert(QStringLiteral("strokes"), strokes);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return fail(error, QStringLiteral("cannot write %1: %2").arg(fileName, file.errorString()));
    file.write(QJsonDocument(root).toJson(QJsonDocument::Compact));
    if (!file.commit())
        return fail(error, QStringLiteral("cannot write %1: %2").arg(fileName, file.errorString()));
    return true;
}
