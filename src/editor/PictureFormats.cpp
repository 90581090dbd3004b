#include "editor/PictureFormats.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPdfDocument>
#include <QTemporaryFile>

#include <iterator>

namespace {

quint32 littleEndian32(const QByteArray &bytes, qsizetype at)
{
    if (at < 0 || at + 4 > bytes.size())
        return 0;
    const auto *p = reinterpret_cast<const uchar *>(bytes.constData() + at);
    return quint32(p[0]) | (quint32(p[1]) << 8) | (quint32(p[2]) << 16) | (quint32(p[3]) << 24);
}

quint16 littleEndian16(const QByteArray &bytes, qsizetype at)
{
    if (at < 0 || at + 2 > bytes.size())
        return 0;
    const auto *p = reinterpret_cast<const uchar *>(bytes.constData() + at);
    return quint16(p[0] | (p[1] << 8));
}

bool usable(QSize size)
{
    return size.isValid() && !size.isEmpty() && size.width() <= PictureFormats::maxSide &&
           size.height() <= PictureFormats::maxSide &&
           qint64(size.width()) * size.height() <= PictureFormats::maxPixels;
}

// A DIB always starts with the size of its header; these are the ones Windows defines.
bool isDibHeader(const QByteArray &bytes)
{
    const quint32 headerSize = littleEndian32(bytes, 0);
    return bytes.size() > 16 && (headerSize == 12 || headerSize == 40 || headerSize == 52 || headerSize == 56 ||
                                 headerSize == 108 || headerSize == 124);
}

struct Traits {
    PictureFormat format;
    const char *reader;
    const char *displayName;
    const char *extension;
    const char *pictKeyword; // empty: RTF has no inline form for it
};

constexpr Traits traits[] = {
    {PictureFormat::png, "png", "PNG", "png", "pngblip"},   {PictureFormat::jpeg, "jpeg", "JPEG", "jpg", "jpegblip"},
    {PictureFormat::gif, "gif", "GIF", "gif", ""},          {PictureFormat::bmp, "bmp", "BMP", "bmp", ""},
    {PictureFormat::dib, "bmp", "BMP", "bmp", "dibitmap0"}, {PictureFormat::tiff, "tiff", "TIFF", "tiff", ""},
    {PictureFormat::webp, "webp", "WebP", "webp", ""},      {PictureFormat::emf, "", "EMF", "emf", "emfblip"},
    {PictureFormat::wmf, "", "WMF", "wmf", "wmetafile8"},   {PictureFormat::pdf, "", "PDF", "pdf", ""},
    {PictureFormat::unknown, "", "?", "bin", ""},
};

const Traits &traitsOf(PictureFormat format)
{
    for (const Traits &entry : traits) {
        if (entry.format == format)
            return entry;
    }
    return traits[std::size(traits) - 1];
}

} // namespace

PictureFormat PictureFormats::sniff(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return PictureFormat::png;
    if (bytes.startsWith("\xFF\xD8\xFF"))
        return PictureFormat::jpeg;
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return PictureFormat::gif;
    if (bytes.startsWith("BM") && bytes.size() > 26)
        return PictureFormat::bmp;
    if (bytes.startsWith(QByteArray("II*\0", 4)) || bytes.startsWith(QByteArray("MM\0*", 4)))
        return PictureFormat::tiff;
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return PictureFormat::webp;
    if (littleEndian32(bytes, 0) == 1 && bytes.mid(40, 4) == " EMF")
        return PictureFormat::emf;
    if (bytes.startsWith("\xD7\xCD\xC6\x9A") ||
        (littleEndian16(bytes, 0) <= 2 && littleEndian16(bytes, 2) == 9 &&
         (littleEndian16(bytes, 4) == 0x300 || littleEndian16(bytes, 4) == 0x100)))
        return PictureFormat::wmf;
    if (bytes.startsWith("%PDF"))
        return PictureFormat::pdf;
    if (isDibHeader(bytes))
        return PictureFormat::dib;
    return PictureFormat::unknown;
}

QByteArray PictureFormats::readerName(PictureFormat format)
{
    return traitsOf(format).reader;
}

QString PictureFormats::displayName(PictureFormat format)
{
    return QString::fromLatin1(traitsOf(format).displayName);
}

QString PictureFormats::fileExtension(PictureFormat format)
{
    return QString::fromLatin1(traitsOf(format).extension);
}

QByteArray PictureFormats::pictKeyword(PictureFormat format)
{
    return traitsOf(format).pictKeyword;
}

std::optional<QSize> PictureFormats::pixelSize(const QByteArray &bytes, PictureFormat format)
{
    const QByteArray reader = readerName(format);
    if (reader.isEmpty())
        return std::nullopt;
    // A PNG names its size in its first chunk; no need to start a decoder for it.
    if (format == PictureFormat::png) {
        if (bytes.size() < 33 || bytes.mid(12, 4) != "IHDR")
            return std::nullopt;
        const auto *p = reinterpret_cast<const uchar *>(bytes.constData());
        const auto bigEndian = [p](int at) {
            return (quint32(p[at]) << 24) | (quint32(p[at + 1]) << 16) | (quint32(p[at + 2]) << 8) | p[at + 3];
        };
        const quint32 width = bigEndian(16);
        const quint32 height = bigEndian(20);
        if (width > quint32(maxSide) || height > quint32(maxSide))
            return std::nullopt;
        const QSize size{int(width), int(height)};
        return usable(size) ? std::optional(size) : std::nullopt;
    }
    QBuffer buffer;
    buffer.setData(format == PictureFormat::dib ? withBitmapFileHeader(bytes) : bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader imageReader(&buffer, reader);
    imageReader.setAutoDetectImageFormat(false);
    QSize size = imageReader.size();
    if (imageReader.transformation() & QImageIOHandler::TransformationRotate90)
        size.transpose();
    return usable(size) ? std::optional(size) : std::nullopt;
}

QImage PictureFormats::decode(const QByteArray &bytes, PictureFormat format, int maxDisplaySide)
{
    if (format == PictureFormat::pdf)
        return renderFirstPdfPage(bytes, maxDisplaySide > 0 ? maxDisplaySide : 2400);
    const auto size = pixelSize(bytes, format);
    if (!size)
        return {};
    QBuffer buffer;
    buffer.setData(format == PictureFormat::dib ? withBitmapFileHeader(bytes) : bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, readerName(format));
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    if (maxDisplaySide > 0 && (size->width() > maxDisplaySide || size->height() > maxDisplaySide)) {
        // JPEG decodes straight to a fraction of its size: a photo opens fast.
        QSize scaled = size->scaled(maxDisplaySide, maxDisplaySide, Qt::KeepAspectRatio);
        if (reader.transformation() & QImageIOHandler::TransformationRotate90)
            scaled.transpose();
        reader.setScaledSize(scaled);
    }
    return reader.read();
}

// RTF carries a device-independent bitmap without the file header a BMP reader expects.
QByteArray PictureFormats::withBitmapFileHeader(const QByteArray &dib)
{
    const quint32 headerSize = littleEndian32(dib, 0);
    quint32 paletteBytes = 0;
    if (headerSize == 12) {
        const quint16 bits = littleEndian16(dib, 10);
        paletteBytes = bits <= 8 ? 3u << bits : 0;
    } else {
        const quint16 bits = littleEndian16(dib, 14);
        const quint32 compression = littleEndian32(dib, 16);
        const quint32 used = qMin<quint32>(littleEndian32(dib, 32), 256);
        paletteBytes = 4 * (used > 0 ? used : (bits <= 8 ? 1u << bits : 0));
        if (headerSize == 40 && (compression == 3 || compression == 6))
            paletteBytes += compression == 3 ? 12 : 16;
    }
    QByteArray file("BM");
    const auto append32 = [&file](quint32 value) {
        for (int i = 0; i < 4; ++i)
            file.append(char((value >> (8 * i)) & 0xFF));
    };
    append32(quint32(14 + dib.size()));
    append32(0);
    append32(14 + headerSize + paletteBytes);
    file.append(dib);
    return file;
}

QImage PictureFormats::renderFirstPdfPage(const QByteArray &bytes, int maxDisplaySide)
{
    // The PDF reader wants a file it can read at any offset at any time.
    QTemporaryFile file;
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return {};
    QPdfDocument document;
    if (document.load(file.fileName()) != QPdfDocument::Error::None || document.pageCount() < 1)
        return {};
    const QSizeF points = document.pagePointSize(0);
    if (!(points.width() > 0) || !(points.height() > 0))
        return {};
    // Twice the point size, for sharp edges on a high-resolution screen.
    const QSize pixels = (points * 2).toSize().boundedTo(QSize(maxSide, maxSide)).expandedTo(QSize(1, 1));
    const QImage page =
        document.render(0, pixels.scaled(maxDisplaySide, maxDisplaySide, Qt::KeepAspectRatio).boundedTo(pixels));
    if (page.isNull())
        return {};
    // A page has no background of its own; on paper it is white.
    QImage onPaper(page.size(), QImage::Format_RGB32);
    onPaper.fill(Qt::white);
    QPainter painter(&onPaper);
    painter.drawImage(0, 0, page);
    return onPaper;
}
