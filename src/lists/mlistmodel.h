#pragma once

#include "lists/mlistmodelbase.h"

// The typed face of MListModelBase: a list of T, owned by the list.
template <class T> class MListModel : public MListModelBase
{
public:
    explicit MListModel(QObject* parent = nullptr) : MListModelBase(parent) {}

    T* at(int row) const { return static_cast<T*>(objectAt(row)); }
    int indexOf(const T* item) const { return indexOfObject(item); }
    T* current() const { return at(currentRow()); }

    void append(T* item) { insertObject(count(), item); }
    void insert(int row, T* item) { insertObject(row, item); }
    bool removeAt(int row) { return removeObject(row); }
    T* takeAt(int row) { return static_cast<T*>(takeObject(row)); }
    bool move(int from, int to) { return moveObject(from, to); }
    void clear() { clearObjects(); }

    QList<T*> items() const
    {
        QList<T*> result;
        for (int row = 0; row < count(); ++row)
            result.append(at(row));
        return result;
    }
};
