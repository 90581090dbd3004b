#pragma once

#include "editor/StoredPicture.h"

#include <QByteArray>
#include <QHash>
#include <QSize>
#include <QSizeF>
#include <QTextDocument>

#include <optional>

// A poem body. Its pictures are kept as the bytes they are stored in and decoded only when
// they are first painted, so opening a poem with large images decodes none of them, and
// saving after a keystroke never re-encodes a picture. Pictures stay registered for the
// life of the document, so undo and redo can bring a removed image back.
class PoemTextDocument : public QTextDocument {
    Q_OBJECT

public:
    // Pictures larger than this are decoded for the screen at a reduced size: enough for a
    // page-wide picture on a high-resolution screen, and half a 12-megapixel photo exactly,
    // which JPEG decodes without a further scaling pass.
    static constexpr int maxShownSide = 2000;

    explicit PoemTextDocument(QObject *parent = nullptr);

    // Registers a picture; returns the name to put into a QTextImageFormat.
    QString addPicture(StoredPicture picture);
    // Registers encoded image bytes whose pixel size is known.
    QString addPicture(const QByteArray &encoded, QSize pixelSize);
    // Registers an image, stored as PNG.
    QString addPicture(const QImage &image);
    bool hasPicture(const QString &name) const;
    std::optional<StoredPicture> picture(const QString &name) const;
    QSizeF naturalSize(const QString &name) const;
    // Whether the program can draw the picture; the others show a framed placeholder.
    bool canShow(const QString &name) const;
    // The picture as PNG for readers that take nothing else; other formats are converted
    // once and remembered. Nothing for a picture the program cannot draw.
    std::optional<QByteArray> pngData(const QString &name) const;
    // Takes over the pictures of another document (names are unique across documents).
    void adoptPictures(const PoemTextDocument &other);

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    struct Entry {
        StoredPicture picture;
        bool shown = false;
        mutable QByteArray png;
    };
    QImage placeholder(const StoredPicture &picture) const;

    QHash<QString, Entry> m_pictures;
};
