#pragma once

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>

// Shared helpers of the editor tests.
namespace EditorTestSupport {

struct Run {
    QString text;
    QTextCharFormat format;
};

inline QList<Run> runsOf(const QTextBlock &block)
{
    QList<Run> runs;
    for (auto it = block.begin(); !it.atEnd(); ++it)
        runs.append({it.fragment().text(), it.fragment().charFormat()});
    return runs;
}

inline QTextBlock blockAt(const QTextDocument &document, int index)
{
    return document.findBlockByNumber(index);
}

// The run of the block containing the given text.
inline QTextCharFormat formatOf(const QTextDocument &document, const QString &text)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (const Run &run : runsOf(block)) {
            if (run.text.contains(text))
                return run.format;
        }
    }
    return {};
}

inline QString familyOf(const QTextCharFormat &format)
{
    const QStringList families = format.fontFamilies().toStringList();
    return families.isEmpty() ? QString() : families.first();
}

inline QImage patternImage(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.fillRect(image.rect(), QColor(40, 90, 160));
    painter.setPen(QColor(240, 200, 80));
    for (int x = 0; x < width; x += 7)
        painter.drawLine(x, 0, width - x, height);
    return image;
}

inline QByteArray pngBytes(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

inline int imageCount(const QTextDocument &document)
{
    int count = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (const Run &run : runsOf(block))
            count += run.format.isImageFormat() ? int(run.text.size()) : 0;
    }
    return count;
}

inline QTextImageFormat firstImage(const QTextDocument &document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (const Run &run : runsOf(block)) {
            if (run.format.isImageFormat())
                return run.format.toImageFormat();
        }
    }
    return {};
}

} // namespace EditorTestSupport
