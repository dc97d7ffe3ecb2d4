#pragma once

#include "lists/mtablemodel.h"

#include <QPointer>
#include <QString>

class MShader;
class MShaderList;

// The effects of the effect list that pass a filter, by kind and by a search
// text, in the list's order. Its items stand in for the effects; the current
// rows of the two lists follow each other.
class MShaderFilterModel : public MTableModel
{
    Q_OBJECT

public:
    enum Filter
    {
        AllShaders = 0,
        EffectsOnly = 1,
        EnginesOnly = 2
    };
    Q_ENUM(Filter)

    explicit MShaderFilterModel(MShaderList* source, QObject* parent = nullptr);

    MShaderList* source() const { return m_source; }
    int filter() const { return m_filter; }
    QString searchText() const { return m_searchText; }
    // The effect shown in that row, null for a bad row.
    MShader* shaderAt(int row) const;
    // The row that shows the effect, -1 when it is filtered out.
    int rowOf(const MShader* shader) const;

public Q_SLOTS:
    void setFilter(int filter);
    // Keeps effects whose description or group holds the text, ignoring case.
    void setSearchText(const QString& text);
    // Reads the source list again.
    void rebuild();

private:
    bool accepts(const MShader* shader) const;
    void onCurrentRowChanged(int row);
    void onSourceCurrentRowChanged(int row);

    QPointer<MShaderList> m_source;
    int m_filter = AllShaders;
    QString m_searchText;
    bool m_syncing = false;
};
