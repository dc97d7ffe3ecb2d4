#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

// A texture an effect declares: the sampler's name, the file it shows, and how
// it is sampled, in the values of the declaration language (filters 0 to 5,
// wraps 0 to 4); they become GL constants when the texture is bound.
class MTexture : public QObject
{
    Q_OBJECT

public:
    explicit MTexture(QObject* parent = nullptr) : QObject(parent) {}

    QByteArray name;
    int textureUnit = 0;
    unsigned textureHandle = 0;
    int minFilter = 5;
    int magFilter = 1;
    int wrapS = 2;
    int wrapT = 2;
    QString fileName;
    bool loaded = false;
    int width = 512;
    int height = 512;
};
