#pragma once

#include "app/msingleton.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class MShader;

// The effects known to the program, by id.
class MShaderList : public QObject, public MSingleton<MShaderList>
{
    Q_OBJECT

public:
    MShaderList();
    ~MShaderList() override;

    int count() const { return int(m_shaders.size()); }
    MShader* at(int index) const;
    // The effect of that id (compared trimmed and upper-cased), or null.
    MShader* shader(const QString& id) const;
    // Takes the effect; an effect of the same id is replaced.
    MShader* addShader(std::unique_ptr<MShader> shader);
    bool removeShader(const QString& id);

    static QString normalizedId(const QString& id) { return id.trimmed().toUpper(); }

private:
    std::vector<std::unique_ptr<MShader>> m_shaders;
};
