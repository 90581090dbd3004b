#include "editor/StoredPicture.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>

std::optional<StoredPicture> StoredPicture::fromFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return std::nullopt;
    }
    StoredPicture picture;
    picture.bytes = file.readAll();
    picture.format = PictureFormats::sniff(picture.bytes);
    const auto pixels = PictureFormats::pixelSize(picture.bytes, picture.format);
    if (!pixels) {
        QImageReader reader(path);
        *error = reader.canRead() ? QCoreApplication::translate("StoredPicture", "zu groß") : reader.errorString();
        return std::nullopt;
    }
    picture.naturalSize = QSizeF(*pixels);
    return picture;
}
