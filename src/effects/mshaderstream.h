#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class MShader;

// Reads and writes one effect file (.qsh): an indented JSON object with the
// keys group, description, id, source, type and preview. The source and the
// preview travel as base64 so that the file stays ASCII.
class MShaderStream : public QObject
{
    Q_OBJECT

public:
    explicit MShaderStream(MShader* shader, QObject* parent = nullptr);
    ~MShaderStream() override;

    MShader* shader() const { return m_shader; }

    // False only when the file can't be opened. A file that isn't readable JSON
    // still loads: every value is then taken as if its key were missing.
    bool load(const QString& fileName);
    // False when the file can't be opened for writing or the write fails.
    bool save(const QString& fileName);

    // A preview larger than this is taken as damaged rather than decoded: the
    // file holds a thumbnail, and its header alone mustn't decide how much
    // memory is asked for.
    static constexpr int maxPreviewSide = 4096;

private:
    QPointer<MShader> m_shader;
};
