#pragma once

#include <QObject>
#include <QString>
#include <QVector>

// A group of brush settings shown together in the settings panels.
class MSettingCategory : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString description READ description WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(QVector<int> settings READ settings NOTIFY settingsChanged)

public:
    explicit MSettingCategory(const QString& description = QString(), QObject* parent = nullptr);

    QString description() const { return m_description; }
    // MEnum::BrushSetting values in display order.
    QVector<int> settings() const { return m_settings; }

public Q_SLOTS:
    void setDescription(const QString& description);
    // Appends a setting not yet in the category.
    void addSetting(int setting);

Q_SIGNALS:
    void descriptionChanged(const QString& description);
    void settingsChanged(const QVector<int>& settings);

private:
    QString m_description;
    QVector<int> m_settings;
};
