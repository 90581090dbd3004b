#include "editor/PoemTextDocument.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QLocale>
#include <QLoggingCategory>
#include <QPainter>
#include <QUrl>
#include <QUuid>

Q_LOGGING_CATEGORY(lcPictures, "odeleaf.pictures")

namespace {

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

QString describe(const StoredPicture &picture)
{
    return picture.fileName.isEmpty()
               ? PictureFormats::displayName(picture.format)
               : PictureFormats::displayName(picture.format) + QLatin1Char(' ') + picture.fileName;
}

} // namespace

PoemTextDocument::PoemTextDocument(QObject *parent) : QTextDocument(parent)
{
}

QString PoemTextDocument::addPicture(StoredPicture picture)
{
    const QString name = freshPictureName();
    Entry entry;
    entry.shown =
        picture.format == PictureFormat::pdf || PictureFormats::pixelSize(picture.bytes, picture.format).has_value();
    if (picture.format == PictureFormat::png && entry.shown)
        entry.png = picture.bytes;
    if (!entry.shown) {
        qCInfo(lcPictures).noquote() << "kept" << describe(picture) << "picture of" << picture.bytes.size()
                                     << "bytes unchanged; it is shown as a placeholder";
    }
    entry.picture = std::move(picture);
    m_pictures.insert(name, std::move(entry));
    return name;
}

QString PoemTextDocument::addPicture(const QByteArray &encoded, QSize pixelSize)
{
    StoredPicture picture;
    picture.bytes = encoded;
    picture.format = PictureFormats::sniff(encoded);
    picture.naturalSize = pixelSize;
    return addPicture(std::move(picture));
}

QString PoemTextDocument::addPicture(const QImage &image)
{
    const QString name = addPicture(encodePng(image), image.size());
    // Already decoded: no need to decode it again for painting.
    addResource(QTextDocument::ImageResource, QUrl(name), image);
    return name;
}

bool PoemTextDocument::hasPicture(const QString &name) const
{
    return m_pictures.contains(name);
}

std::optional<StoredPicture> PoemTextDocument::picture(const QString &name) const
{
    const auto found = m_pictures.constFind(name);
    if (found == m_pictures.constEnd())
        return std::nullopt;
    return found->picture;
}

QSizeF PoemTextDocument::naturalSize(const QString &name) const
{
    return m_pictures.value(name).picture.naturalSize;
}

bool PoemTextDocument::canShow(const QString &name) const
{
    return m_pictures.value(name).shown;
}

std::optional<QByteArray> PoemTextDocument::pngData(const QString &name) const
{
    const auto found = m_pictures.constFind(name);
    if (found == m_pictures.constEnd() || !found->shown)
        return std::nullopt;
    if (found->png.isEmpty()) {
        const QImage image = PictureFormats::decode(found->picture.bytes, found->picture.format);
        if (image.isNull())
            return std::nullopt;
        found->png = encodePng(image);
        qCInfo(lcPictures).noquote() << "converted" << describe(found->picture) << "picture to PNG for export";
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
    QImage image;
    if (found->shown)
        image = PictureFormats::decode(found->picture.bytes, found->picture.format, maxShownSide);
    if (found->shown && found->picture.format == PictureFormat::pdf && !image.isNull())
        qCInfo(lcPictures).noquote() << "converted" << describe(found->picture) << "to a PNG page for display";
    if (image.isNull())
        image = placeholder(found->picture);
    // Remembered, so painting never decodes the same picture twice.
    addResource(type, name, image);
    return image;
}

// A frame the size of the picture naming what it is; the bytes stay as they are.
QImage PoemTextDocument::placeholder(const StoredPicture &picture) const
{
    QSize size = picture.naturalSize.toSize();
    if (size.width() < 40 || size.height() < 30)
        size = QSize(240, 160);
    size = size.boundedTo(QSize(1600, 1600));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(128, 128, 128, 28));
    QPainter painter(&image);
    QPen pen(QColor(128, 128, 128));
    pen.setStyle(Qt::DashLine);
    pen.setWidth(2);
    painter.setPen(pen);
    painter.drawRect(image.rect().adjusted(1, 1, -2, -2));
    // Text needs fonts, which only a GUI application has.
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        const QString kind = picture.format == PictureFormat::unknown
                                 ? tr("Eingebettetes Objekt")
                                 : tr("%1-Grafik").arg(PictureFormats::displayName(picture.format));
        const QString text = tr("%1\n%2 × %3 pt, %4\nwird unverändert aufbewahrt")
                                 .arg(kind)
                                 .arg(qRound(picture.naturalSize.width()))
                                 .arg(qRound(picture.naturalSize.height()))
                                 .arg(QLocale().formattedDataSize(picture.bytes.size()));
        QFont font = painter.font();
        font.setPixelSize(qBound(10, size.height() / 10, 18));
        painter.setFont(font);
        painter.setPen(QColor(110, 110, 110));
        painter.drawText(image.rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, text);
    }
    return image;
}
