#include "effects/mshaderlist.h"

#include "app/mlogger.h"
#include "effects/mshader.h"
#include "effects/mshaderstream.h"

#include <QFile>
#include <QJsonDocument>

MShaderList::MShaderList() : MParamList(MEnum::ShaderDir, QStringLiteral("qsh"))
{
    setItemClass(&MShader::staticMetaObject);
    setMimeType(QStringLiteral("application/vnd.tarnbeck.shader"));
    load();
    MLogger::instance()->write(QStringLiteral("Shaders loaded: %1 shaders").arg(count()));
}

MShaderList::~MShaderList() = default;

MShader* MShaderList::shaderAt(int row) const
{
    return qobject_cast<MShader*>(item(row));
}

MShader* MShaderList::shaderById(const QString& id) const
{
    return qobject_cast<MShader*>(itemById(id));
}

int MShaderList::indexOfDescription(const QString& text) const
{
    for (int row = 0; row < count(); ++row) {
        if (shaderAt(row)->description().compare(text, Qt::CaseInsensitive) == 0)
            return row;
    }
    return -1;
}

bool MShaderList::removeByDescription(const QString& text)
{
    const int row = indexOfDescription(text);
    return row >= 0 && item(row) && removeRow(row);
}

MShader* MShaderList::addShader(std::unique_ptr<MShader> shader)
{
    if (!shader)
        return nullptr;
    removeShader(shader->id());
    MShader* added = shader.release();
    // The table's own append: the order and the index stay as they are.
    MTableModel::addItem(added);
    return added;
}

bool MShaderList::removeShader(const QString& id)
{
    const int row = indexOf(itemById(id));
    return row >= 0 && MTableModel::removeRow(row);
}

MShader* MShaderList::newShader(int type, const QString& group, const QString& description,
                                const QString& source)
{
    auto shader = std::make_unique<MShader>();
    shader->setType(type);
    shader->setGroup(group);
    shader->setDescription(description);
    shader->setSource(source);
    return appendSaved(std::move(shader));
}

MShader* MShaderList::duplicateShader(const MShader* source, const QString& description)
{
    if (!source)
        return nullptr;
    auto shader = std::make_unique<MShader>();
    const QString id = shader->id();
    shader->assign(*source);
    shader->setId(id);
    shader->setDescription(description);
    return appendSaved(std::move(shader));
}

MShader* MShaderList::appendSaved(std::unique_ptr<MShader> shader)
{
    if (!saveItem(shader.get()))
        return nullptr;
    MShader* added = shader.release();
    addItem(added);
    return added;
}

QObject* MShaderList::createItem()
{
    return new MShader;
}

bool MShaderList::readItem(QObject* object, const QString& fileName)
{
    auto* shader = qobject_cast<MShader*>(object);
    if (!shader)
        return false;
    MShaderStream stream(shader);
    return stream.load(fileName);
}

bool MShaderList::writeItem(QObject* object, const QString& fileName)
{
    auto* shader = qobject_cast<MShader*>(object);
    if (!shader)
        return false;
    MShaderStream stream(shader);
    return stream.save(fileName);
}

bool MShaderList::isImportable(const QString& fileName) const
{
    // Effect files are small: a whole-file read is what the stream does too.
    QFile file(fileName);
    if (!MParamList::isImportable(fileName) || !file.open(QIODevice::ReadOnly))
        return false;
    return QJsonDocument::fromJson(file.readAll()).isObject();
}

void MShaderList::loadFromFiles(const QStringList& order, const QHash<QString, MParamFile>& files)
{
    loadItems(order, files, QStringLiteral("MShaderList::loadFromFiles"), QStringLiteral("shader"));
    sortByIndex();
    setCurrentRow(count() > 0 ? 0 : -1);
}
