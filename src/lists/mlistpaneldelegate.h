#pragma once

#include <QObject>
#include <QRectF>

class QPainter;

// Paints one item of an MListPanel in its cell. The default shows the item's
// description, or its id when the description is empty; lists with pictures
// derive from it.
class MListPanelDelegate : public QObject
{
    Q_OBJECT

public:
    explicit MListPanelDelegate(QObject* parent = nullptr);

    virtual void paint(QPainter* painter, QObject* item, const QRectF& rect, bool selected);

    // The text the default painting shows for an item.
    static QString itemText(const QObject* item);
};
