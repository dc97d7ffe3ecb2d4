#pragma once

#include "app/msingleton.h"
#include "lists/mparamlist.h"

#include <QString>

#include <memory>

class MShader;

// The effects and brush engines known to the program: one .qsh file each, in
// the system and the user shader directories.
class MShaderList : public MParamList, public MSingleton<MShaderList>
{
    Q_OBJECT

public:
    MShaderList();
    ~MShaderList() override;

    MShader* shaderAt(int row) const;
    // The effect of that id (compared trimmed and upper-cased), or null.
    MShader* shaderById(const QString& id) const;
    MShader* currentShader() const { return shaderAt(currentRow()); }
    // The first row whose description equals text, ignoring case; -1 when none.
    int indexOfDescription(const QString& text) const;
    bool removeByDescription(const QString& text);

    // Takes an effect for this session only, as for one read from a loose
    // file: an effect of the same id is replaced, and no file or index is
    // written.
    MShader* addShader(std::unique_ptr<MShader> shader);
    // Drops an effect of this session; its files are left alone.
    bool removeShader(const QString& id);

    // A new effect of that type, saved to the user directory and appended.
    MShader* newShader(int type, const QString& group, const QString& description, const QString& source);
    // A copy of source under a new id, saved and appended.
    MShader* duplicateShader(const MShader* source, const QString& description);

    QObject* createItem() override;
    bool readItem(QObject* object, const QString& fileName) override;
    bool writeItem(QObject* object, const QString& fileName) override;
    // An effect file reads as an empty effect when it isn't JSON; an import
    // asks for a JSON object.
    bool isImportable(const QString& fileName) const override;

protected:
    void loadFromFiles(const QStringList& order, const QHash<QString, MParamFile>& files) override;

private:
    MShader* appendSaved(std::unique_ptr<MShader> shader);
};
