#pragma once

#include "editor/PictureFormats.h"

#include <QByteArray>
#include <QSize>
#include <QSizeF>
#include <QString>

#include <optional>

// One picture of a poem exactly as it is stored. Its bytes are never re-encoded, so a
// picture another program wrote goes back out as it came in.
struct StoredPicture {
    QByteArray bytes;
    PictureFormat format = PictureFormat::unknown;
    // The picture's own size: pixels when it can be shown, else the size it was placed at
    // (points). Resizing to a menu size measures against it.
    QSizeF naturalSize;
    // Set for a picture that came as an attachment of an RTFD container; it is written back
    // as one under the same name.
    QString fileName;
    // How an RTF picture was declared (\wmetafile8, \picw…), so it is written back the same.
    QByteArray pictKeyword;
    QSize pictExtent;

    bool travelsAsAttachment() const
    {
        return !fileName.isEmpty() || (pictKeyword.isEmpty() && PictureFormats::pictKeyword(format).isEmpty());
    }

    // An image file as it is, for inserting; nothing (with Qt's reason) when Qt cannot
    // read it as an image.
    static std::optional<StoredPicture> fromFile(const QString &path, QString *error);
};
