#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <optional>

// The kinds of picture a poem can hold: what word processors put into RTF and what
// attachments of an RTFD container carry. Recognised by content, never trusted by name.
enum class PictureFormat { png, jpeg, gif, bmp, dib, tiff, webp, emf, wmf, pdf, unknown };

class PictureFormats {
public:
    static constexpr int maxSide = 20000;
    static constexpr qint64 maxPixels = 64LL * 1024 * 1024;

    static PictureFormat sniff(const QByteArray &bytes);
    // Qt's name of the format for QImageReader; empty when Qt has no reader for it.
    static QByteArray readerName(PictureFormat format);
    // "EMF", "PDF"…: for log lines and the placeholder of a picture that cannot be shown.
    static QString displayName(PictureFormat format);
    static QString fileExtension(PictureFormat format);
    // The keyword under which RTF carries the picture inline; nothing when RTF has none and
    // the picture travels as an attachment of an RTFD container.
    static QByteArray pictKeyword(PictureFormat format);

    // The size the picture is shown at, in pixels, read from its header only (EXIF rotation
    // applied). Nothing when it cannot be decoded, or would be too large to decode safely.
    static std::optional<QSize> pixelSize(const QByteArray &bytes, PictureFormat format);
    // The pixels, scaled down on decoding to fit maxDisplaySide when it is given. PDF
    // documents give their first page.
    static QImage decode(const QByteArray &bytes, PictureFormat format, int maxDisplaySide = 0);

private:
    static QByteArray withBitmapFileHeader(const QByteArray &dib);
    static QImage renderFirstPdfPage(const QByteArray &bytes, int maxDisplaySide);
};
