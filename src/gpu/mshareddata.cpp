#include "gpu/mshareddata.h"

#include "app/mlogger.h"
#include "app/mpathvarlist.h"
#include "document/mcanvas.h"
#include "effects/mshader.h"
#include "effects/mtexture.h"
#include "gpu/mframebuffer.h"
#include "gpu/mshaderprogramlist.h"
#include "gpu/mvertexbuffer.h"

#include <QImage>
#include <QOpenGLTexture>
#include <QOpenGLVertexArrayObject>

#include <new>

MSharedData::MSharedData(MCanvas* canvas)
    : QObject(canvas), m_canvas(canvas), m_brush(new MBrush(this)),
      m_programList(new MShaderProgramList(this))
{
}

MSharedData::~MSharedData() = default;

void MSharedData::initializeGL()
{
    if (m_valid || m_failed)
        return;
    const QString source = QStringLiteral("MSharedData::initializeGL");
    if (!m_canvas->makeCurrent()) {
        MLogger::systemError(source, QStringLiteral("Unable to make current context"));
        m_failed = true;
        return;
    }
    initializeOpenGLFunctions();
    m_frameBuffer = std::make_unique<MFrameBuffer>();
    m_stampBuffer = std::make_unique<MVertexBuffer>(stampBufferCapacity);
    if (!m_stampBuffer->create()) {
        MLogger::systemError(source, QStringLiteral("Unable to create stamp buffer"));
        m_failed = true;
        return;
    }
    m_emptyTexture = createEmptyTexture(QStringLiteral("MSharedData::createEmptyTexture"));
    if (!m_emptyTexture) {
        MLogger::systemError(source, QStringLiteral("Unable to create empty texture"));
        m_failed = true;
        return;
    }
    if (!createColorTextures()) {
        MLogger::systemError(source, QStringLiteral("Unable to create color sample texture"));
        m_failed = true;
        return;
    }
    m_vertexArray = std::make_unique<QOpenGLVertexArrayObject>();
    m_vertexArray->create();
    m_programList->initializeGL();
    m_programList->addSystemPrograms();
    // The program list worked in its own context.
    m_canvas->makeCurrent();
    m_valid = true;
}

void MSharedData::shutDown()
{
    if (!m_canvas->makeCurrent())
        MLogger::systemError(QStringLiteral("MSharedData::shutDown"),
                             QStringLiteral("Unable to make current context"));
    if (m_stampBuffer)
        m_stampBuffer->destroy();
    m_stampBuffer.reset();
    if (m_frameBuffer)
        m_frameBuffer->destroy();
    m_frameBuffer.reset();
    m_emptyTexture.reset();
    m_brushTexture.reset();
    destroyEngineTextures();
    destroyColorTextures();
    m_programList->shutDown();
    m_canvas->makeCurrent();
    if (m_vertexArray)
        m_vertexArray->destroy();
    m_vertexArray.reset();
    m_valid = false;
    m_failed = false;
}

std::unique_ptr<QOpenGLTexture> MSharedData::createEmptyTexture(const QString& source)
{
    std::unique_ptr<QOpenGLTexture> texture(new (std::nothrow) QOpenGLTexture(QOpenGLTexture::Target2D));
    if (!texture) {
        MLogger::systemError(source, QStringLiteral("Unable to instanciate texture"));
        return nullptr;
    }
    QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        MLogger::systemError(source, QStringLiteral("Image memory allocation fail"));
        return nullptr;
    }
    image.fill(Qt::transparent);
    if (!texture->create()) {
        MLogger::systemError(source, QStringLiteral("Unable to create texture"));
        return nullptr;
    }
    texture->setSize(2, 2);
    texture->setFormat(QOpenGLTexture::RGBA8_UNorm);
    texture->setMinMagFilters(QOpenGLTexture::Nearest, QOpenGLTexture::Nearest);
    texture->setData(image, QOpenGLTexture::DontGenerateMipMaps);
    return texture;
}

bool MSharedData::createColorTextures()
{
    destroyColorTextures();
    if (minimumColorTextureSize > m_maximumColorTextureSize) {
        m_maximumColorTextureSize = minimumColorTextureSize;
        return true;
    }
    bool ok = true;
    int last = minimumColorTextureSize;
    for (int size = minimumColorTextureSize; size <= defaultMaximumColorTextureSize; size += 2) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        auto* sample = new (std::nothrow) QOpenGLTexture(image, QOpenGLTexture::GenerateMipMaps);
        auto* feedback = new (std::nothrow) QOpenGLTexture(image, QOpenGLTexture::GenerateMipMaps);
        if (!sample || !feedback || !sample->isCreated() || !feedback->isCreated()) {
            MLogger::systemError(QStringLiteral("MSharedData::createColorTextures"),
                                 QStringLiteral("error during color textures creation"));
            delete sample;
            delete feedback;
            ok = false;
            continue;
        }
        m_colorTextures.insert(size, sample);
        m_colorFeedbackTextures.insert(size, feedback);
        last = size;
    }
    m_maximumColorTextureSize = last;
    return ok;
}

void MSharedData::destroyColorTextures()
{
    qDeleteAll(m_colorTextures);
    qDeleteAll(m_colorFeedbackTextures);
    m_colorTextures.clear();
    m_colorFeedbackTextures.clear();
}

void MSharedData::swapColorTextures(int size)
{
    if (!m_colorTextures.contains(size) || !m_colorFeedbackTextures.contains(size))
        return;
    QOpenGLTexture* sample = m_colorTextures.value(size);
    m_colorTextures.insert(size, m_colorFeedbackTextures.value(size));
    m_colorFeedbackTextures.insert(size, sample);
}

void MSharedData::setColorTextureSize(double brushRadius)
{
    m_colorTextureSize =
        qBound(minimumColorTextureSize, 4 * int(brushRadius / 2.0), m_maximumColorTextureSize);
}

MTextureLayer* MSharedData::currentLayer() const
{
    return m_canvas->at(m_currentLayerIndex);
}

MTextureLayer* MSharedData::underLayer() const
{
    return m_currentLayerIndex > 0 ? m_canvas->at(m_currentLayerIndex - 1) : nullptr;
}

bool MSharedData::loadBrushTexture(const QImage& image)
{
    m_canvas->makeCurrent();
    m_brushTexture.reset(createTexture(image));
    if (!m_brushTexture || !m_brushTexture->isCreated()) {
        MLogger::systemError(QStringLiteral("MSharedData::loadBrushTexture"),
                             QStringLiteral("error during brush texture creation"));
        m_brushTexture.reset();
        return false;
    }
    return true;
}

void MSharedData::unloadBrushTexture()
{
    m_canvas->makeCurrent();
    m_brushTexture.reset();
}

QOpenGLTexture* MSharedData::createTexture(const QImage& image)
{
    if (image.isNull())
        return nullptr;
    auto texture = std::make_unique<QOpenGLTexture>(QOpenGLTexture::Target2D);
    if (!texture->create())
        return nullptr;
    texture->setFormat(QOpenGLTexture::RGBA8_UNorm);
    texture->setSize(image.width(), image.height());
    texture->setMipLevels(texture->maximumMipLevels());
    texture->allocateStorage();
    QOpenGLPixelTransferOptions options;
    options.setAlignment(1);
    const QImage rgba =
        image.format() == QImage::Format_RGBA8888 ? image : image.convertToFormat(QImage::Format_RGBA8888);
    texture->setData(QOpenGLTexture::RGBA, QOpenGLTexture::UInt8, rgba.constBits(), &options);
    texture->generateMipMaps();
    return texture.release();
}

bool MSharedData::loadEngineTextures(MShader* engine)
{
    if (!engine || engine->textureCount() == 0)
        return true;
    QStringList fileNames;
    for (int i = 0; i < engine->textureCount(); ++i)
        fileNames << engine->texture(i)->fileName;
    EngineTextures& entry = m_engineTextures[engine->id()];
    if (entry.fileNames == fileNames && entry.textures.size() == fileNames.size())
        return !entry.textures.contains(nullptr);
    m_canvas->makeCurrent();
    qDeleteAll(entry.textures);
    entry.textures.clear();
    entry.fileNames = fileNames;
    bool ok = true;
    for (const QString& fileName : qAsConst(fileNames)) {
        const QString path = MPathVarList::instance()->expand(fileName);
        QOpenGLTexture* texture = createTexture(QImage(path));
        if (!texture) {
            MLogger::systemError(QStringLiteral("MSharedData::loadEngineTextures"),
                                 QStringLiteral("Error during texture creation ") + path);
            ok = false;
        }
        entry.textures.append(texture);
    }
    return ok;
}

QOpenGLTexture* MSharedData::engineTexture(const QString& engineId, int index) const
{
    const auto found = m_engineTextures.constFind(engineId);
    return found == m_engineTextures.constEnd() ? nullptr : found->textures.value(index);
}

void MSharedData::destroyEngineTextures()
{
    for (const EngineTextures& entry : qAsConst(m_engineTextures))
        qDeleteAll(entry.textures);
    m_engineTextures.clear();
}

void MSharedData::setBrush(const MBrush& brush)
{
    m_brush->assign(brush);
}

MBrush::SettingValues* MSharedData::values(int index)
{
    return index >= 0 && index < maximumStrokeCount ? &m_values[size_t(index)] : nullptr;
}

const MBrush::SettingValues* MSharedData::values(int index) const
{
    return index >= 0 && index < maximumStrokeCount ? &m_values[size_t(index)] : nullptr;
}

MEvent* MSharedData::lastEvent(int index)
{
    return index >= 0 && index < maximumStrokeCount ? &m_lastEvents[size_t(index)] : nullptr;
}
