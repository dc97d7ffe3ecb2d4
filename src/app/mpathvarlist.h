#pragma once

#include "app/msingleton.h"

#include <QObject>
#include <QVector>

class MPathVar;

// The path variables, in the order expand() replaces them.
class MPathVarList : public QObject, public MSingleton<MPathVarList>
{
    Q_OBJECT

public:
    MPathVarList();

    int count() const { return m_items.size(); }
    MPathVar* at(int index) const { return m_items.value(index); }

    // Replaces every variable, case-sensitively, everywhere in the text.
    QString expand(const QString& text) const;

private:
    QVector<MPathVar*> m_items;
};
