#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QString>

class MBrush;
class MCurve;

// Reads and writes one brush as an indented UTF-8 JSON document. Group and
// description are stored lower-cased, as keys of the "Brushes" translation
// context, and shown translated after a read.
class MBrushStream : public QObject
{
    Q_OBJECT

public:
    explicit MBrushStream(MBrush* brush, QObject* parent = nullptr);

    MBrush* brush() const { return m_brush; }

    // False when the file can't be opened or holds no JSON document; a document
    // with wrong or missing keys reads with defaults. Logs nothing.
    bool load(const QString& fileName);
    // True when the file was opened and written.
    bool save(const QString& fileName);

    // The document as save writes it, and the reading of one as load does.
    QByteArray toJson() const;
    bool fromJson(const QByteArray& data);

private:
    QJsonObject writeCurve(const MCurve& curve) const;
    QJsonObject writeSettings(QJsonObject document) const;
    void readSetting(int setting, const QJsonObject& object);
    void readQuickSettings(const QJsonValue& value);
    void readShaderValues(const QJsonValue& value);

    QPointer<MBrush> m_brush;
};
