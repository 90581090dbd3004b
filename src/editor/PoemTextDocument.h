#pragma once

#include <QByteArray>
#include <QHash>
#include <QSize>
#include <QTextDocument>

#include <optional>

// A poem body. Its pictures are kept as the bytes they are stored in and decoded only when
// they are first painted, so opening a poem with large images decodes none of them, and
// saving after a keystroke never re-encodes a picture. Pictures stay registered for the
// life of the document, so undo and redo can bring a removed image back.
class PoemTextDocument : public QTextDocument {
    Q_OBJECT

public:
    explicit PoemTextDocument(QObject *parent = nullptr);

    // Registers encoded image bytes (PNG, JPEG, GIF) whose pixel size is known; returns the
    // name to put into a QTextImageFormat.
    QString addPicture(const QByteArray &encoded, QSize pixelSize);
    // Registers an image, stored as PNG.
    QString addPicture(const QImage &image);
    bool hasPicture(const QString &name) const;
    QSize pictureSize(const QString &name) const;
    // The picture as PNG; other formats are converted once and remembered.
    std::optional<QByteArray> pngData(const QString &name) const;
    // Takes over the pictures of another document (names are unique across documents).
    void adoptPictures(const PoemTextDocument &other);

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    struct Picture {
        QByteArray bytes;
        QSize pixelSize;
        mutable QByteArray png;
    };
    QHash<QString, Picture> m_pictures;
};
