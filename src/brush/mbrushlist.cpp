#include "brush/mbrushlist.h"

#include "app/mlogger.h"
#include "brush/mbrush.h"
#include "brush/mbrushstream.h"

MBrushList::MBrushList() : MParamList(MEnum::BrushDir, QStringLiteral("qmb"))
{
    setItemClass(&MBrush::staticMetaObject);
    load();
    MLogger::instance()->write(QStringLiteral("Brushes loaded: %1 brushes").arg(count()));
}

MBrushList::~MBrushList() = default;

MBrush* MBrushList::brushAt(int row) const
{
    return qobject_cast<MBrush*>(item(row));
}

MBrush* MBrushList::brushById(const QString& id) const
{
    return qobject_cast<MBrush*>(itemById(id));
}

int MBrushList::indexOfDescription(const QString& text) const
{
    for (int row = 0; row < count(); ++row) {
        if (brushAt(row)->description().compare(text, Qt::CaseInsensitive) == 0)
            return row;
    }
    return -1;
}

double MBrushList::baseValueOfCurrent(int setting) const
{
    const MBrush* brush = currentBrush();
    return brush ? brush->baseValue(setting) : 0.0;
}

bool MBrushList::removeByDescription(const QString& text)
{
    const int row = indexOfDescription(text);
    return row >= 0 && removeRow(row);
}

MBrush* MBrushList::addBrush(const QString& group, const QString& description)
{
    auto brush = std::make_unique<MBrush>(this);
    brush->set_group(group);
    brush->set_description(description);
    return appendSaved(std::move(brush));
}

MBrush* MBrushList::duplicateBrush(const MBrush* source, const QString& group, const QString& description)
{
    if (!source)
        return nullptr;
    auto brush = std::make_unique<MBrush>(this);
    brush->assign(*source);
    brush->set_group(group);
    brush->set_description(description);
    return appendSaved(std::move(brush));
}

MBrush* MBrushList::appendSaved(std::unique_ptr<MBrush> brush)
{
    if (!saveItem(brush.get()))
        return nullptr;
    MBrush* added = brush.release();
    addItem(added);
    return added;
}

QObject* MBrushList::createItem()
{
    return new MBrush(this);
}

bool MBrushList::readItem(QObject* object, const QString& fileName)
{
    auto* brush = qobject_cast<MBrush*>(object);
    return brush && brush->load(fileName);
}

bool MBrushList::writeItem(QObject* object, const QString& fileName)
{
    auto* brush = qobject_cast<MBrush*>(object);
    if (!brush)
        return false;
    MBrushStream stream(brush);
    return stream.save(fileName);
}

void MBrushList::loadFromFiles(const QStringList& order, const QHash<QString, MParamFile>& files)
{
    loadItems(order, files, QStringLiteral("MBrushList::loadFromFiles"), QStringLiteral("brush"));
    if (count() == 0)
        MTableModel::addItem(new MBrush);
    setCurrentRow(0);
}
