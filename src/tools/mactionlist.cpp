#include "tools/mactionlist.h"

#include "tools/maction.h"

#include <QAction>
#include <QKeySequence>
#include <QWidget>

MActionList::MActionList(QObject* parent) : MTableModel(parent)
{
    setItemClass(&MAction::staticMetaObject);
}

QString MActionList::describe(const QAction* action)
{
    if (!action)
        return QString();
    QString text = action->toolTip();
    if (text.isEmpty())
        text = action->text();
    text = text.trimmed();
    const QLatin1String ellipsis("...");
    if (text.endsWith(ellipsis))
        text.chop(ellipsis.size());
    return text;
}

int MActionList::rebuild(QWidget* window)
{
    beginResetModel();
    clearRaw();
    if (window) {
        const QList<QAction*> actions = window->findChildren<QAction*>();
        for (QAction* action : actions) {
            if (action->objectName().isEmpty())
                continue;
            const QString description = describe(action);
            if (description.isEmpty())
                continue;
            auto* row = new MAction;
            row->set_description(description);
            row->set_shortCut(action->shortcut().toString());
            row->set_action(action);
            appendRaw(row);
        }
    }
    endResetModel();
    if (currentRow() >= count())
        setCurrentRow(-1);
    Q_EMIT countChanged(count());
    return count();
}
