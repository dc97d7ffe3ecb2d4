#pragma once

#include <QByteArray>
#include <QHash>

class QOpenGLFunctions;
class QOpenGLShaderProgram;

// Binds named samplers of a program to texture units from 1 upward, leaving
// unit 0 alone, and unbinds them all at once. Lives on the stack of one draw.
class MTextureBinder
{
public:
    explicit MTextureBinder(QOpenGLFunctions* functions);
    ~MTextureBinder();

    // False once every unit of the driver is taken.
    bool bindTexture(unsigned textureId, QOpenGLShaderProgram* program, const QByteArray& samplerName,
                     int minFilter, int magFilter, int wrapS, int wrapT);
    void releaseTextures();
    int nextUnit() const { return m_nextUnit; }

private:
    static constexpr int firstUnit = 1;
    QOpenGLFunctions* m_functions;
    int m_nextUnit = firstUnit;
    QHash<int, unsigned> m_units;
};
