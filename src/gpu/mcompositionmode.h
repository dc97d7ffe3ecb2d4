#pragma once

#include <QObject>
#include <QString>

// One way of combining a brush's colour with the layer under it: its number,
// which is the value of the brush setting and of the M_ constants of the stamp
// programs, its English name, and whether brushes offer it.
class MCompositionMode : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int mode READ mode WRITE set_mode NOTIFY modeChanged)
    Q_PROPERTY(QString description READ description WRITE set_description NOTIFY descriptionChanged)
    Q_PROPERTY(bool usedByBrush READ usedByBrush WRITE set_usedByBrush NOTIFY usedByBrushChanged)

public:
    explicit MCompositionMode(QObject* parent = nullptr);
    MCompositionMode(int mode, const QString& description, bool usedByBrush, QObject* parent = nullptr);

    int mode() const { return m_mode; }
    QString description() const { return m_description; }
    bool usedByBrush() const { return m_usedByBrush; }

public Q_SLOTS:
    void set_mode(int mode);
    void set_description(const QString& description);
    void set_usedByBrush(bool usedByBrush);

Q_SIGNALS:
    void modeChanged(int mode);
    void descriptionChanged(const QString& description);
    void usedByBrushChanged(bool usedByBrush);

private:
    int m_mode = 0;
    QString m_description;
    bool m_usedByBrush = false;
};
