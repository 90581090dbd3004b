#include "editor/PoemTextDocument.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QUrl>
#include <QUuid>

namespace {

bool isPng(const QByteArray &bytes)
{
    return bytes.startsWith("\x89PNG\r\n\x1a\n");
}

QByteArray encodePng(const QImage &image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return {};
    return png;
}

QString freshPictureName()
{
    return QStringLiteral("odeleaf-picture:") + QUuid::createUuid().toString(QUuid::WithoutBraces);
}

} // namespace

PoemTextDocument::PoemTextDocument(QObject *parent) : QTextDocument(parent)
{
}

QString PoemTextDocument::addPicture(const QByteArray &encoded, QSize pixelSize)
{
    const QString name = freshPictureName();
    Picture picture{encoded, pixelSize, {}};
    if (isPng(encoded))
        picture.png = encoded;
    m_pictures.insert(name, picture);
    return name;
}

QString PoemTextDocument::addPicture(const QImage &image)
{
    const QByteArray png = encodePng(image);
    const QString name = addPicture(png, image.size());
    // Already decoded: no need to decode it again for painting.
    addResource(QTextDocument::ImageResource, QUrl(name), image);
    return name;
}

bool PoemTextDocument::hasPicture(const QString &name) const
{
    return m_pictures.contains(name);
}

QSize PoemTextDocument::pictureSize(const QString &name) const
{
    return m_pictures.value(name).pixelSize;
}

std::optional<QByteArray> PoemTextDocument::pngData(const QString &name) const
{
    const auto found = m_pictures.constFind(name);
    if (found == m_pictures.constEnd())
        return std::nullopt;
    if (found->png.isEmpty()) {
        const QImage image = QImage::fromData(found->bytes);
        if (image.isNull())
            return std::nullopt;
        found->png = encodePng(image);
    }
    if (found->png.isEmpty())
        return std::nullopt;
    return found->png;
}

void PoemTextDocument::adoptPictures(const PoemTextDocument &other)
{
    for (auto it = other.m_pictures.constBegin(); it != other.m_pictures.constEnd(); ++it)
        m_pictures.insert(it.key(), it.value());
}

QVariant PoemTextDocument::loadResource(int type, const QUrl &name)
{
    if (type != QTextDocument::ImageResource)
        return QTextDocument::loadResource(type, name);
    const auto found = m_pictures.constFind(name.toString());
    if (found == m_pictures.constEnd())
        return QTextDocument::loadResource(type, name);
    QBuffer buffer;
    buffer.setData(found->bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // A picture that cannot be decoded is remembered as empty, so painting does not retry it.
    const QImage image = reader.read();
    addResource(type, name, image);
    return image;
}
