#include "editor/RtfWriter.h"

#include "editor/PoemTextDocument.h"
#include "editor/RtfdContainer.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QHash>
#include <QImage>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>

#include <cmath>

namespace {

// Readers without the leading control word get a proportional spacing close to what the
// leading looks like at this size.
constexpr double typicalLineHeightFactor = 1.2;

int twips(double points)
{
    return int(std::lround(points * 20));
}

QString familyOf(const QTextCharFormat &format, const QString &fallback)
{
    const QStringList families = format.fontFamilies().toStringList();
    if (!families.isEmpty() && !families.first().isEmpty())
        return families.first();
    return fallback;
}

double sizeOf(const QTextCharFormat &format, double fallback)
{
    const double size = format.fontPointSize();
    return size > 0 ? size : fallback;
}

std::optional<QColor> colorOf(const QTextCharFormat &format)
{
    if (!format.hasProperty(QTextFormat::ForegroundBrush))
        return std::nullopt;
    const QBrush brush = format.foreground();
    if (brush.style() == Qt::NoBrush)
        return std::nullopt;
    return brush.color();
}

class Writer {
public:
    explicit Writer(const QTextDocument &document)
        : m_document(document), m_pictures(qobject_cast<const PoemTextDocument *>(&document)),
          m_defaultFamily(document.defaultFont().family()),
          m_defaultSize(document.defaultFont().pointSizeF() > 0 ? document.defaultFont().pointSizeF() : 12)
    {
    }

    Result<QByteArray> run()
    {
        collectTables();
        m_out.reserve(4096);
        m_out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n";
        writeFontTable();
        writeColorTable();
        m_out += "{\\*\\generator OdeLeaf;}\n";
        // DIN A4 with 2.5 cm margins, for word processors that open the text as a page.
        m_out += "\\paperw11906\\paperh16838\\margl1417\\margr1417\\margt1417\\margb1134\n";
        // Every paragraph ends with \par, as word processors write it; a reader opens no
        // new paragraph after the last one.
        for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
            if (auto written = writeBlock(block); !written)
                return written.error();
            m_out += "\\par\n";
        }
        m_out += "}\n";
        if (m_attachments.isEmpty())
            return m_out;
        return RtfdContainer::write(m_out, m_attachments);
    }

private:
    void noteFormat(const QTextCharFormat &format)
    {
        const QString family = familyOf(format, m_defaultFamily);
        if (!m_fontIndex.contains(family)) {
            m_fontIndex.insert(family, int(m_fonts.size()));
            m_fonts.append(family);
        }
        if (const auto color = colorOf(format)) {
            const QRgb rgb = color->rgb() & 0xFFFFFF;
            if (!m_colorIndex.contains(rgb)) {
                m_colors.append(rgb);
                m_colorIndex.insert(rgb, int(m_colors.size())); // index 0 is "automatic"
            }
        }
    }

    void collectTables()
    {
        m_fonts.append(m_defaultFamily);
        m_fontIndex.insert(m_defaultFamily, 0);
        for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
            noteFormat(block.charFormat());
            for (auto it = block.begin(); !it.atEnd(); ++it)
                noteFormat(it.fragment().charFormat());
        }
    }

    void writeFontTable()
    {
        m_out += "{\\fonttbl";
        for (qsizetype i = 0; i < m_fonts.size(); ++i) {
            m_out += "{\\f" + QByteArray::number(i) + "\\fnil\\fcharset0 ";
            appendText(m_fonts.at(i), true);
            m_out += ";}";
        }
        m_out += "}\n";
    }

    void writeColorTable()
    {
        m_out += "{\\colortbl;";
        for (const QRgb rgb : std::as_const(m_colors)) {
            m_out += "\\red" + QByteArray::number(qRed(rgb)) + "\\green" + QByteArray::number(qGreen(rgb)) + "\\blue" +
                     QByteArray::number(qBlue(rgb)) + ';';
        }
        m_out += "}\n";
    }

    void writeParagraphFormat(const QTextBlock &block)
    {
        const QTextBlockFormat format = block.blockFormat();
        m_out += "\\pard";
        const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
        if (alignment & Qt::AlignHCenter)
            m_out += "\\qc";
        else if (alignment & Qt::AlignRight)
            m_out += "\\qr";
        else if (alignment & Qt::AlignJustify)
            m_out += "\\qj";
        else
            m_out += "\\ql";
        if (format.bottomMargin() > 0)
            m_out += "\\sa" + QByteArray::number(twips(format.bottomMargin()));
        writeLineSpacing(format, sizeOf(block.charFormat(), m_defaultSize));
    }

    void writeLineSpacing(const QTextBlockFormat &format, double fontSize)
    {
        const double height = format.lineHeight();
        switch (format.lineHeightType()) {
        case QTextBlockFormat::LineDistanceHeight: {
            if (height <= 0)
                return;
            const double natural = fontSize * typicalLineHeightFactor;
            const int proportional = int(std::lround(240 * (natural + height) / natural));
            m_out += "\\slleading" + QByteArray::number(twips(height)) + "\\sl" + QByteArray::number(proportional) +
                     "\\slmult1";
            return;
        }
        case QTextBlockFormat::ProportionalHeight:
            if (height > 0 && std::lround(height) != 100)
                m_out += "\\sl" + QByteArray::number(std::lround(height * 2.4)) + "\\slmult1";
            return;
        case QTextBlockFormat::FixedHeight:
            if (height > 0)
                m_out += "\\sl-" + QByteArray::number(twips(height)) + "\\slmult0";
            return;
        case QTextBlockFormat::MinimumHeight:
            if (height > 0)
                m_out += "\\sl" + QByteArray::number(twips(height)) + "\\slmult0";
            return;
        default:
            return;
        }
    }

    void writeCharFormat(const QTextCharFormat &format)
    {
        m_out += "\\plain\\f" + QByteArray::number(m_fontIndex.value(familyOf(format, m_defaultFamily)));
        m_out += "\\fs" + QByteArray::number(std::lround(sizeOf(format, m_defaultSize) * 2));
        if (format.fontWeight() >= QFont::DemiBold)
            m_out += "\\b";
        if (format.fontItalic())
            m_out += "\\i";
        if (format.fontUnderline())
            m_out += "\\ul";
        if (format.fontStrikeOut())
            m_out += "\\strike";
        if (const auto color = colorOf(format))
            m_out += "\\cf" + QByteArray::number(m_colorIndex.value(color->rgb() & 0xFFFFFF));
        m_out += ' ';
    }

    Result<void> writeBlock(const QTextBlock &block)
    {
        writeParagraphFormat(block);
        if (block.length() <= 1) {
            // An empty paragraph keeps the format typing would start with.
            writeCharFormat(block.charFormat());
            return {};
        }
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat format = fragment.charFormat();
            if (format.isImageFormat()) {
                // One image format can stand for several adjacent object characters.
                for (int i = 0; i < fragment.length(); ++i) {
                    if (auto written = writePicture(format.toImageFormat()); !written)
                        return written;
                }
                continue;
            }
            writeCharFormat(format);
            appendText(fragment.text(), false);
        }
        return {};
    }

    // A picture of a plain QTextDocument (pasted HTML): only its pixels are known.
    std::optional<StoredPicture> resourcePicture(const QString &name) const
    {
        const QImage image = m_document.resource(QTextDocument::ImageResource, QUrl(name)).value<QImage>();
        if (image.isNull())
            return std::nullopt;
        StoredPicture picture;
        QBuffer buffer(&picture.bytes);
        buffer.open(QIODevice::WriteOnly);
        if (!image.save(&buffer, "PNG"))
            return std::nullopt;
        picture.format = PictureFormat::png;
        picture.naturalSize = image.size();
        return picture;
    }

    Result<void> writePicture(const QTextImageFormat &format)
    {
        std::optional<StoredPicture> picture =
            m_pictures ? m_pictures->picture(format.name()) : std::optional<StoredPicture>();
        if (!picture)
            picture = resourcePicture(format.name());
        if (!picture) {
            return Error{
                QCoreApplication::translate("PoemRichText", "Ein Bild des Gedichts konnte nicht gelesen werden.")};
        }
        const double width = format.width() > 0 ? format.width() : picture->naturalSize.width();
        const double height = format.height() > 0 ? format.height() : picture->naturalSize.height();
        if (picture->travelsAsAttachment()) {
            m_out += "{{\\NeXTGraphic ";
            appendText(attachmentName(format.name(), *picture), true);
            m_out += " \\width" + QByteArray::number(twips(width)) + " \\height" + QByteArray::number(twips(height)) +
                     "}\\'ac}";
            return {};
        }
        const QByteArray keyword =
            picture->pictKeyword.isEmpty() ? PictureFormats::pictKeyword(picture->format) : picture->pictKeyword;
        const QSize extent = picture->pictExtent.isEmpty() ? picture->naturalSize.toSize() : picture->pictExtent;
        m_out += "{\\pict\\" + keyword + "\\picw" + QByteArray::number(extent.width()) + "\\pich" +
                 QByteArray::number(extent.height()) + "\\picwgoal" + QByteArray::number(twips(width)) + "\\pichgoal" +
                 QByteArray::number(twips(height));
        // Raw bytes (\binN) rather than hex digits: half the size, and every edit stores
        // the whole text again. Word processors read both.
        m_out += "\\bin" + QByteArray::number(picture->bytes.size()) + ' ';
        m_out += picture->bytes;
        m_out += "}";
        return {};
    }

    // One file per picture, under the name it came with where that is still free.
    QString attachmentName(const QString &pictureName, const StoredPicture &picture)
    {
        if (const auto known = m_attachmentNames.constFind(pictureName); known != m_attachmentNames.constEnd())
            return *known;
        QString base = picture.fileName;
        if (base.isEmpty())
            base = QStringLiteral("Bild.") + PictureFormats::fileExtension(picture.format);
        QString name = base;
        const qsizetype dot = base.lastIndexOf(QLatin1Char('.'));
        for (int i = 2; m_usedFileNames.contains(name); ++i) {
            name = dot > 0 ? base.left(dot) + QLatin1Char(' ') + QString::number(i) + base.mid(dot)
                           : base + QLatin1Char(' ') + QString::number(i);
        }
        m_usedFileNames.insert(name);
        m_attachmentNames.insert(pictureName, name);
        m_attachments.append({name, picture.bytes});
        return name;
    }

    void appendText(const QString &text, bool inTable)
    {
        for (const QChar c : text) {
            const char16_t u = c.unicode();
            if (u == '\\' || u == '{' || u == '}') {
                m_out += '\\';
                m_out += char(u);
            } else if (u == '\t' && !inTable) {
                m_out += "\\tab ";
            } else if (u == QChar::LineSeparator && !inTable) {
                m_out += "\\line ";
            } else if (u == QChar::Nbsp) {
                m_out += "\\~";
            } else if (u == QChar::ObjectReplacementCharacter || u < 0x20) {
                // An object without its image, or a control character: nothing to show.
            } else if (u < 0x80) {
                m_out += char(u);
            } else {
                m_out += "\\u" + QByteArray::number(qint16(u)) + '?';
            }
        }
    }

    const QTextDocument &m_document;
    const PoemTextDocument *m_pictures;
    QString m_defaultFamily;
    double m_defaultSize;
    QStringList m_fonts;
    QHash<QString, int> m_fontIndex;
    QList<QRgb> m_colors;
    QHash<QRgb, int> m_colorIndex;
    QByteArray m_out;
    QHash<QString, QString> m_attachmentNames;
    QSet<QString> m_usedFileNames;
    QList<QPair<QString, QByteArray>> m_attachments;
};

} // namespace

Result<QByteArray> RtfWriter::write(const QTextDocument &document)
{
    return Writer(document).run();
}
