#pragma once

#include "app/msingleton.h"
#include "lists/mparamlist.h"

#include <QString>

#include <memory>

class MBrush;

// Every brush of the program: one .qmb file each, in the system and the user
// brush directories. The list is never empty: with no readable file it holds
// one default brush.
class MBrushList : public MParamList, public MSingleton<MBrushList>
{
    Q_OBJECT

public:
    MBrushList();
    ~MBrushList() override;

    // The brush of that row, or null for a bad row.
    MBrush* brushAt(int row) const;
    MBrush* brushById(const QString& id) const;
    MBrush* currentBrush() const { return brushAt(currentRow()); }
    // The first row whose description equals text, ignoring case; -1 when none.
    int indexOfDescription(const QString& text) const;
    // A setting's base value in the current brush; 0.0 without one.
    double baseValueOfCurrent(int setting) const;
    bool removeByDescription(const QString& text);

    // A new default brush, saved to the user directory and appended.
    MBrush* addBrush(const QString& group, const QString& description);
    // A copy of source under its own new id, saved and appended.
    MBrush* duplicateBrush(const MBrush* source, const QString& group, const QString& description);

    QObject* createItem() override;
    bool readItem(QObject* object, const QString& fileName) override;
    bool writeItem(QObject* object, const QString& fileName) override;

protected:
    void loadFromFiles(const QStringList& order, const QHash<QString, MParamFile>& files) override;

private:
    MBrush* appendSaved(std::unique_ptr<MBrush> brush);
};
