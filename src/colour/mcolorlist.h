#pragma once

#include "app/msingleton.h"

#include <QColor>
#include <QList>
#include <QObject>

#include <memory>
#include <vector>

// The current colour pair and the history of colours painted with, newest
// first. A colour chosen with Ctrl held becomes the second colour, any other
// the current one.
class MColorList : public QObject, public MSingleton<MColorList>
{
    Q_OBJECT

public:
    MColorList();
    ~MColorList() override;

    // From the setting of the history's length, at least 1.
    int capacity() const { return m_capacity; }
    int count() const { return int(m_colors.size()); }
    // The history colour of index; black for a bad index.
    QColor color(int index) const;
    QColor foregroundColor() const { return m_foregroundColor; }
    QColor backgroundColor() const { return m_backgroundColor; }

public Q_SLOTS:
    // Empties the history; the current colour goes back to black.
    void clear();
    // Puts color at the front of the history, moving it there when present.
    void updateColorList(const QColor& color);
    void setColor(const QColor& color, Qt::KeyboardModifiers modifiers);
    void setColor(const QColor& color);
    void setCapacity(int capacity);

Q_SIGNALS:
    void colorChanged(const QColor& color, Qt::KeyboardModifiers modifiers);
    void colorAdded(const QColor& color);

private:
    int m_capacity = 10;
    std::vector<std::unique_ptr<QColor>> m_colors;
    QColor m_spareColor;
    QColor m_foregroundColor = Qt::black;
    QColor m_backgroundColor = Qt::white;
};
