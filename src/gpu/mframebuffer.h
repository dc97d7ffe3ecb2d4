#pragma once

#include <QObject>

// The framebuffer through which the program renders into tile textures. It
// works on the current context; the GL name is made on first attachment.
class MFrameBuffer : public QObject
{
public:
    explicit MFrameBuffer(QObject* parent = nullptr);
    ~MFrameBuffer() override;

    // Attaches level 0 of a 2D texture at GL_COLOR_ATTACHMENT0 + attachment and
    // leaves the framebuffer bound, complete or not.
    bool attachTexture(unsigned textureId, int attachment = 0);
    bool detachTexture(int attachment = 0);
    void bind();
    void release();
    void destroy();
    unsigned name() const { return m_name; }

    static void debugStatus(unsigned status);
    static QString statusName(unsigned status);

private:
    unsigned m_name = 0;
};
