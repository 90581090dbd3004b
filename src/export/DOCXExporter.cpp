#include "export/DOCXExporter.h"

#include "archive/AppPreferences.h"
#include "archive/AtomicFileWriter.h"
#include "editor/PoemTextDocument.h"
#include "export/OdeLeafLogo.h"
#include "export/XmlText.h"

#include <QBuffer>
#include <QTextBlock>
#include <QTextImageFormat>

#include <algorithm>
#include <cmath>

namespace {

constexpr double emuPerPoint = 12700;
constexpr double maximumImageWidth = 440;
constexpr int logoEmu = 457200;
const QString titleColor = QStringLiteral("B39043");
const QString metaColor = QStringLiteral("666666");

const QString namespaceW = QStringLiteral("http://schemas.openxmlformats.org/wordprocessingml/2006/main");
const QString namespaceR = QStringLiteral("http://schemas.openxmlformats.org/officeDocument/2006/relationships");
const QString namespaceWp = QStringLiteral("http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing");
const QString namespaceA = QStringLiteral("http://schemas.openxmlformats.org/drawingml/2006/main");
const QString namespacePic = QStringLiteral("http://schemas.openxmlformats.org/drawingml/2006/picture");
const QString relationshipTypes =
    QStringLiteral("http://schemas.openxmlformats.org/officeDocument/2006/relationships/");

// One element per line, two spaces of indentation per level.
class XmlLines {
public:
    XmlLines() { m_text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"); }

    XmlLines &open(const QString &tag)
    {
        line(QLatin1Char('<') + tag + QLatin1Char('>'));
        ++m_depth;
        return *this;
    }
    XmlLines &close(const QString &name)
    {
        --m_depth;
        line(QStringLiteral("</") + name + QLatin1Char('>'));
        return *this;
    }
    XmlLines &leaf(const QString &tag)
    {
        line(QLatin1Char('<') + tag + QStringLiteral("/>"));
        return *this;
    }
    XmlLines &element(const QString &tag, const QString &name, const QString &escapedText)
    {
        line(QLatin1Char('<') + tag + QLatin1Char('>') + escapedText + QStringLiteral("</") + name + QLatin1Char('>'));
        return *this;
    }
    QByteArray bytes() const { return m_text.toUtf8(); }

private:
    void line(const QString &content)
    {
        m_text += QString(m_depth * 2, QLatin1Char(' '));
        m_text += content;
        m_text += QLatin1Char('\n');
    }

    QString m_text;
    int m_depth = 0;
};

QString attribute(const QString &name, const QString &value)
{
    return QLatin1Char(' ') + name + QStringLiteral("=\"") + value + QLatin1Char('"');
}

QString val(const QString &value)
{
    return attribute(QStringLiteral("w:val"), value);
}

QString fontsTag(const QString &escapedFont)
{
    return QStringLiteral("w:rFonts") + attribute(QStringLiteral("w:ascii"), escapedFont) +
           attribute(QStringLiteral("w:hAnsi"), escapedFont) + attribute(QStringLiteral("w:cs"), escapedFont);
}

QString hexColor(const QColor &color)
{
    const QColor rgb = color.toRgb();
    const auto channel = [](float value) { return int(std::lround(value * 255)); };
    return QString::asprintf("%02X%02X%02X", channel(rgb.redF()), channel(rgb.greenF()), channel(rgb.blueF()));
}

QByteArray contentTypes()
{
    const QString override = QStringLiteral("Override PartName=\"%1\" ContentType=\"%2\"");
    const QString officeType = QStringLiteral("application/vnd.openxmlformats-officedocument.");
    XmlLines xml;
    xml.open(QStringLiteral("Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\""))
        .leaf(QStringLiteral("Default Extension=\"rels\" "
                             "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\""))
        .leaf(QStringLiteral("Default Extension=\"xml\" ContentType=\"application/xml\""))
        .leaf(QStringLiteral("Default Extension=\"png\" ContentType=\"image/png\""))
        .leaf(override.arg(QStringLiteral("/docProps/app.xml"), officeType + QStringLiteral("extended-properties+xml")))
        .leaf(override.arg(QStringLiteral("/docProps/core.xml"),
                           QStringLiteral("application/vnd.openxmlformats-package.core-properties+xml")))
        .leaf(override.arg(QStringLiteral("/word/document.xml"),
                           officeType + QStringLiteral("wordprocessingml.document.main+xml")))
        .leaf(override.arg(QStringLiteral("/word/footer1.xml"),
                           officeType + QStringLiteral("wordprocessingml.footer+xml")))
        .leaf(override.arg(QStringLiteral("/word/styles.xml"),
                           officeType + QStringLiteral("wordprocessingml.styles+xml")))
        .close(QStringLiteral("Types"));
    return xml.bytes();
}

QString relationship(const QString &id, const QString &type, const QString &target)
{
    return QStringLiteral("Relationship Id=\"%1\" Type=\"%2\" Target=\"%3\"").arg(id, type, target);
}

XmlLines &openRelationships(XmlLines &xml)
{
    return xml.open(
        QStringLiteral("Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\""));
}

QByteArray packageRelationships()
{
    XmlLines xml;
    openRelationships(xml)
        .leaf(relationship(QStringLiteral("rId1"), relationshipTypes + QStringLiteral("officeDocument"),
                           QStringLiteral("word/document.xml")))
        .leaf(relationship(QStringLiteral("rId2"),
                           QStringLiteral("http://schemas.openxmlformats.org/package/2006/relationships/metadata/"
                                          "core-properties"),
                           QStringLiteral("docProps/core.xml")))
        .leaf(relationship(QStringLiteral("rId3"), relationshipTypes + QStringLiteral("extended-properties"),
                           QStringLiteral("docProps/app.xml")))
        .close(QStringLiteral("Relationships"));
    return xml.bytes();
}

QByteArray applicationProperties()
{
    XmlLines xml;
    xml.open(QStringLiteral("Properties "
                            "xmlns=\"http://schemas.openxmlformats.org/officeDocument/2006/extended-properties\" "
                            "xmlns:vt=\"http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes\""))
        .element(QStringLiteral("Application"), QStringLiteral("Application"), QStringLiteral("OdeLeaf"))
        .close(QStringLiteral("Properties"));
    return xml.bytes();
}

QByteArray coreProperties(const QString &title, const QDateTime &moment)
{
    const QString stamp = moment.toUTC().toString(Qt::ISODate);
    XmlLines xml;
    xml.open(QStringLiteral("cp:coreProperties "
                            "xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\" "
                            "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\" "
                            "xmlns:dcmitype=\"http://purl.org/dc/dcmitype/\" "
                            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""))
        .element(QStringLiteral("dc:title"), QStringLiteral("dc:title"), DOCXExporter::escape(title))
        .element(QStringLiteral("dc:creator"), QStringLiteral("dc:creator"), QStringLiteral("OdeLeaf"))
        .element(QStringLiteral("cp:lastModifiedBy"), QStringLiteral("cp:lastModifiedBy"), QStringLiteral("OdeLeaf"))
        .element(QStringLiteral("dcterms:created xsi:type=\"dcterms:W3CDTF\""), QStringLiteral("dcterms:created"),
                 stamp)
        .element(QStringLiteral("dcterms:modified xsi:type=\"dcterms:W3CDTF\""), QStringLiteral("dcterms:modified"),
                 stamp)
        .close(QStringLiteral("cp:coreProperties"));
    return xml.bytes();
}

QString spacingTag(const QString &attributes)
{
    return QStringLiteral("w:spacing") + attributes;
}

void paragraphStyle(XmlLines &xml, const QString &head, const QString &id, const QStringList &header,
                    const QString &spacing, const QStringList &run)
{
    xml.open(QStringLiteral("w:style w:type=\"paragraph\"") + head + attribute(QStringLiteral("w:styleId"), id))
        .leaf(QStringLiteral("w:name") + val(id));
    for (const QString &tag : header)
        xml.leaf(tag);
    xml.open(QStringLiteral("w:pPr")).leaf(spacingTag(spacing)).close(QStringLiteral("w:pPr"));
    xml.open(QStringLiteral("w:rPr"));
    for (const QString &tag : run)
        xml.leaf(tag);
    xml.close(QStringLiteral("w:rPr")).close(QStringLiteral("w:style"));
}

QByteArray styles(const QString &escapedFont)
{
    const QString fonts = fontsTag(escapedFont);
    const QString basedOnNormal = QStringLiteral("w:basedOn") + val(QStringLiteral("Normal"));
    const QString quickFormat = QStringLiteral("w:qFormat");
    XmlLines xml;
    xml.open(QStringLiteral("w:styles xmlns:w=\"") + namespaceW + QLatin1Char('"'));
    paragraphStyle(xml, QStringLiteral(" w:default=\"1\""), QStringLiteral("Normal"), {quickFormat},
                   QStringLiteral(" w:after=\"160\" w:line=\"300\" w:lineRule=\"auto\""),
                   {fonts, QStringLiteral("w:sz") + val(QStringLiteral("25"))});
    paragraphStyle(xml, {}, QStringLiteral("Title"), {basedOnNormal, quickFormat}, QStringLiteral(" w:after=\"360\""),
                   {fonts, QStringLiteral("w:b"), QStringLiteral("w:color") + val(titleColor),
                    QStringLiteral("w:sz") + val(QStringLiteral("44"))});
    paragraphStyle(
        xml, {}, QStringLiteral("Meta"), {basedOnNormal}, QStringLiteral(" w:after=\"80\""),
        {fonts, QStringLiteral("w:color") + val(metaColor), QStringLiteral("w:sz") + val(QStringLiteral("20"))});
    xml.close(QStringLiteral("w:styles"));
    return xml.bytes();
}

void drawing(XmlLines &xml, qint64 width, qint64 height, const QString &docPrId, const QString &docPrName,
             const QString &pictureName, const QString &relationshipId)
{
    const QString extent = QStringLiteral(" cx=\"%1\" cy=\"%2\"").arg(width).arg(height);
    xml.open(QStringLiteral("w:r"))
        .open(QStringLiteral("w:drawing"))
        .open(QStringLiteral("wp:inline distT=\"0\" distB=\"0\" distL=\"0\" distR=\"0\""))
        .leaf(QStringLiteral("wp:extent") + extent)
        .leaf(QStringLiteral("wp:docPr") + attribute(QStringLiteral("id"), docPrId) +
              attribute(QStringLiteral("name"), docPrName))
        .open(QStringLiteral("a:graphic"))
        .open(QStringLiteral("a:graphicData uri=\"") + namespacePic + QLatin1Char('"'))
        .open(QStringLiteral("pic:pic"))
        .open(QStringLiteral("pic:nvPicPr"))
        .leaf(QStringLiteral("pic:cNvPr id=\"0\"") + attribute(QStringLiteral("name"), pictureName))
        .leaf(QStringLiteral("pic:cNvPicPr"))
        .close(QStringLiteral("pic:nvPicPr"))
        .open(QStringLiteral("pic:blipFill"))
        .leaf(QStringLiteral("a:blip") + attribute(QStringLiteral("r:embed"), relationshipId))
        .open(QStringLiteral("a:stretch"))
        .leaf(QStringLiteral("a:fillRect"))
        .close(QStringLiteral("a:stretch"))
        .close(QStringLiteral("pic:blipFill"))
        .open(QStringLiteral("pic:spPr"))
        .open(QStringLiteral("a:xfrm"))
        .leaf(QStringLiteral("a:off x=\"0\" y=\"0\""))
        .leaf(QStringLiteral("a:ext") + extent)
        .close(QStringLiteral("a:xfrm"))
        .open(QStringLiteral("a:prstGeom prst=\"rect\""))
        .leaf(QStringLiteral("a:avLst"))
        .close(QStringLiteral("a:prstGeom"))
        .close(QStringLiteral("pic:spPr"))
        .close(QStringLiteral("pic:pic"))
        .close(QStringLiteral("a:graphicData"))
        .close(QStringLiteral("a:graphic"))
        .close(QStringLiteral("wp:inline"))
        .close(QStringLiteral("w:drawing"))
        .close(QStringLiteral("w:r"));
}

QString rootWithNamespaces(const QString &name)
{
    return name + attribute(QStringLiteral("xmlns:w"), namespaceW) + attribute(QStringLiteral("xmlns:r"), namespaceR) +
           attribute(QStringLiteral("xmlns:wp"), namespaceWp) + attribute(QStringLiteral("xmlns:a"), namespaceA) +
           attribute(QStringLiteral("xmlns:pic"), namespacePic);
}

QByteArray footer()
{
    XmlLines xml;
    xml.open(rootWithNamespaces(QStringLiteral("w:ftr")))
        .open(QStringLiteral("w:p"))
        .open(QStringLiteral("w:pPr"))
        .leaf(QStringLiteral("w:jc") + val(QStringLiteral("center")))
        .close(QStringLiteral("w:pPr"));
    drawing(xml, logoEmu, logoEmu, QStringLiteral("1"), QStringLiteral("OdeLeaf Logo"),
            QStringLiteral("odeleaf-logo.png"), QStringLiteral("rIdLogo"));
    xml.close(QStringLiteral("w:p")).close(QStringLiteral("w:ftr"));
    return xml.bytes();
}

QByteArray footerRelationships()
{
    XmlLines xml;
    openRelationships(xml)
        .leaf(relationship(QStringLiteral("rIdLogo"), relationshipTypes + QStringLiteral("image"),
                           QStringLiteral("media/odeleaf-logo.png")))
        .close(QStringLiteral("Relationships"));
    return xml.bytes();
}

QByteArray bodyRelationships(const std::vector<ExportImage> &images, bool withLogo)
{
    XmlLines xml;
    openRelationships(xml);
    for (const ExportImage &image : images) {
        xml.leaf(relationship(image.relationshipId, relationshipTypes + QStringLiteral("image"),
                              QStringLiteral("media/") + image.fileName));
    }
    if (withLogo) {
        xml.leaf(relationship(QStringLiteral("rIdFooter"), relationshipTypes + QStringLiteral("footer"),
                              QStringLiteral("footer1.xml")));
    }
    xml.close(QStringLiteral("Relationships"));
    return xml.bytes();
}

// Writes the body paragraphs and collects the pictures they embed.
class BodyWriter {
public:
    BodyWriter(XmlLines &xml, const QString &escapedFont) : m_xml(xml), m_fonts(fontsTag(escapedFont)) {}

    const std::vector<ExportImage> &images() const { return m_images; }

    void styledParagraph(const QString &style, const QStringList &paragraph, const QStringList &run,
                         const QString &text)
    {
        m_xml.open(QStringLiteral("w:p")).open(QStringLiteral("w:pPr")).leaf(QStringLiteral("w:pStyle") + val(style));
        for (const QString &tag : paragraph)
            m_xml.leaf(tag);
        m_xml.close(QStringLiteral("w:pPr"));
        textRun(run, text);
        m_xml.close(QStringLiteral("w:p"));
    }

    void title(const QString &text)
    {
        styledParagraph(QStringLiteral("Title"), {spacingTag(QStringLiteral(" w:after=\"360\""))},
                        {m_fonts, QStringLiteral("w:b"), QStringLiteral("w:color") + val(titleColor),
                         QStringLiteral("w:sz") + val(QStringLiteral("44"))},
                        text);
    }

    void meta(const QString &text)
    {
        styledParagraph(
            QStringLiteral("Meta"), {spacingTag(QStringLiteral(" w:after=\"40\" w:line=\"220\" w:lineRule=\"auto\""))},
            {m_fonts, QStringLiteral("w:color") + val(metaColor), QStringLiteral("w:sz") + val(QStringLiteral("20"))},
            text);
    }

    void plainParagraph(const QString &text)
    {
        m_xml.open(QStringLiteral("w:p"));
        textRun({}, text);
        m_xml.close(QStringLiteral("w:p"));
    }

    void richParagraphs(const PoemTextDocument &document)
    {
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            m_xml.open(QStringLiteral("w:p"));
            paragraphProperties(block.blockFormat());
            for (auto it = block.begin(); !it.atEnd(); ++it)
                fragment(document, it.fragment());
            m_xml.close(QStringLiteral("w:p"));
        }
    }

private:
    void textRun(const QStringList &properties, const QString &text)
    {
        m_xml.open(QStringLiteral("w:r"));
        if (!properties.isEmpty()) {
            m_xml.open(QStringLiteral("w:rPr"));
            for (const QString &tag : properties)
                m_xml.leaf(tag);
            m_xml.close(QStringLiteral("w:rPr"));
        }
        // A line break inside a paragraph stays a break, not a new paragraph.
        const QStringList lines = text.split(QChar::LineSeparator);
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (i > 0)
                m_xml.leaf(QStringLiteral("w:br"));
            if (lines.at(i).isEmpty() && lines.size() > 1)
                continue;
            m_xml.element(QStringLiteral("w:t xml:space=\"preserve\""), QStringLiteral("w:t"),
                          DOCXExporter::escape(lines.at(i)));
        }
        m_xml.close(QStringLiteral("w:r"));
    }

    void paragraphProperties(const QTextBlockFormat &format)
    {
        m_xml.open(QStringLiteral("w:pPr"));
        if (const auto jc = justification(format.alignment()))
            m_xml.leaf(QStringLiteral("w:jc") + val(*jc));
        const double lineSpacing =
            format.lineHeightType() == QTextBlockFormat::LineDistanceHeight ? format.lineHeight() : 0;
        const long line = lineSpacing != 0 ? std::lround((lineSpacing + 12.5) * 20) : 350;
        const long after = std::lround(std::max(0.0, format.bottomMargin()) * 20);
        m_xml.leaf(
            spacingTag(QStringLiteral(" w:line=\"%1\" w:after=\"%2\" w:lineRule=\"auto\"").arg(line).arg(after)));
        m_xml.close(QStringLiteral("w:pPr"));
    }

    static std::optional<QString> justification(Qt::Alignment alignment)
    {
        switch (int(alignment & (Qt::AlignHorizontal_Mask & ~Qt::AlignAbsolute))) {
        case 0: // natural
        case Qt::AlignLeft:
            return QStringLiteral("left");
        case Qt::AlignHCenter:
            return QStringLiteral("center");
        case Qt::AlignRight:
            return QStringLiteral("right");
        case Qt::AlignJustify:
            return QStringLiteral("both");
        default:
            return std::nullopt;
        }
    }

    QStringList runProperties(const QTextCharFormat &format) const
    {
        QStringList tags;
        const QStringList families = format.fontFamilies().toStringList();
        if (!families.isEmpty() && !families.first().isEmpty())
            tags << fontsTag(DOCXExporter::escape(families.first()));
        if (format.hasProperty(QTextFormat::FontWeight) && format.fontWeight() >= QFont::DemiBold)
            tags << QStringLiteral("w:b");
        if (format.fontItalic())
            tags << QStringLiteral("w:i");
        if (format.hasProperty(QTextFormat::FontPointSize) && format.fontPointSize() > 0)
            tags << QStringLiteral("w:sz") + val(QString::number(DOCXExporter::halfPoints(format.fontPointSize())));
        if (format.fontUnderline())
            tags << QStringLiteral("w:u") + val(QStringLiteral("single"));
        if (format.fontStrikeOut())
            tags << QStringLiteral("w:strike");
        if (format.hasProperty(QTextFormat::ForegroundBrush) && format.foreground().style() != Qt::NoBrush)
            tags << QStringLiteral("w:color") + val(hexColor(format.foreground().color()));
        if (format.hasProperty(QTextFormat::BackgroundBrush) && format.background().style() != Qt::NoBrush)
            tags << QStringLiteral("w:shd") +
                        attribute(QStringLiteral("w:fill"), hexColor(format.background().color()));
        return tags;
    }

    void fragment(const PoemTextDocument &document, const QTextFragment &fragment)
    {
        const QTextCharFormat format = fragment.charFormat();
        if (!format.isImageFormat()) {
            textRun(runProperties(format), fragment.text());
            return;
        }
        // One image format can stand for several adjacent object characters.
        for (int i = 0; i < fragment.length(); ++i)
            image(document, format.toImageFormat());
    }

    void image(const PoemTextDocument &document, const QTextImageFormat &format)
    {
        const auto png = document.pngData(format.name());
        if (!png)
            return;
        const QSize pixels = document.naturalSize(format.name()).toSize();
        QSizeF points(format.width() > 0 ? format.width() : pixels.width(),
                      format.height() > 0 ? format.height() : pixels.height());
        if (format.width() > 0 && format.height() <= 0 && pixels.width() > 0)
            points.setHeight(format.width() * pixels.height() / pixels.width());
        const QSize emu = DOCXExporter::emuSize(points);
        const QString number = QString::number(m_images.size() + 1);
        ExportImage exported{QStringLiteral("rIdImage") + number,
                             QStringLiteral("image-") + number + QStringLiteral(".png"), *png, emu.width(),
                             emu.height()};
        drawing(m_xml, exported.widthEmu, exported.heightEmu, number, exported.fileName, exported.fileName,
                exported.relationshipId);
        m_images.push_back(std::move(exported));
    }

    XmlLines &m_xml;
    QString m_fonts;
    std::vector<ExportImage> m_images;
};

} // namespace

DOCXExporter::Options DOCXExporter::Options::current()
{
    return {AppPreferences::editorFontName(), QDateTime::currentDateTimeUtc(), OdeLeafLogo::png()};
}

QString DOCXExporter::escape(const QString &text)
{
    const QString allowed = XmlText::allowedCharacters(text);
    QString escaped;
    escaped.reserve(allowed.size() + allowed.size() / 8);
    for (const QChar c : allowed) {
        switch (c.unicode()) {
        case '&':
            escaped += QLatin1String("&amp;");
            break;
        case '<':
            escaped += QLatin1String("&lt;");
            break;
        case '>':
            escaped += QLatin1String("&gt;");
            break;
        case '"':
            escaped += QLatin1String("&quot;");
            break;
        case '\'':
            escaped += QLatin1String("&apos;");
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

double DOCXExporter::printPointSize(double editorPointSize)
{
    return std::max(editorPointSize * 12.5 / 17, 8.0);
}

int DOCXExporter::halfPoints(double editorPointSize)
{
    return int(std::lround(2 * printPointSize(editorPointSize)));
}

QSize DOCXExporter::emuSize(QSizeF points)
{
    if (points.width() > maximumImageWidth)
        points = QSizeF(maximumImageWidth, points.height() * maximumImageWidth / points.width());
    return {int(std::lround(points.width() * emuPerPoint)), int(std::lround(points.height() * emuPerPoint))};
}

std::vector<ZipArchive::Entry> DOCXExporter::parts(const ExportDocument &document, const Options &options)
{
    const QString font = escape(options.fontName);
    const bool withLogo = options.logo.has_value();

    XmlLines body;
    body.open(rootWithNamespaces(QStringLiteral("w:document"))).open(QStringLiteral("w:body"));
    BodyWriter writer(body, font);
    writer.title(document.title);
    for (const QString &line : document.metaLines)
        writer.meta(line);
    writer.plainParagraph({});
    if (document.hasRichText()) {
        writer.richParagraphs(*document.richText);
    } else if (document.plainText.trimmed().isEmpty()) {
        writer.plainParagraph(QStringLiteral("— kein Text —"));
    } else {
        QString text = document.plainText;
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
        for (const QString &line : text.split(QLatin1Char('\n')))
            writer.plainParagraph(line);
    }
    body.open(QStringLiteral("w:sectPr"));
    if (withLogo)
        body.leaf(QStringLiteral("w:footerReference w:type=\"default\" r:id=\"rIdFooter\""));
    body.leaf(QStringLiteral("w:pgSz w:w=\"11906\" w:h=\"16838\""))
        .leaf(QStringLiteral("w:pgMar w:top=\"1800\" w:right=\"1280\" w:bottom=\"1280\" w:left=\"1280\" "
                             "w:header=\"708\" w:footer=\"708\" w:gutter=\"0\""))
        .close(QStringLiteral("w:sectPr"))
        .close(QStringLiteral("w:body"))
        .close(QStringLiteral("w:document"));

    std::vector<ZipArchive::Entry> entries{
        {QStringLiteral("[Content_Types].xml"), contentTypes()},
        {QStringLiteral("_rels/.rels"), packageRelationships()},
        {QStringLiteral("docProps/app.xml"), applicationProperties()},
        {QStringLiteral("docProps/core.xml"), coreProperties(document.title, options.moment)},
        {QStringLiteral("word/styles.xml"), styles(font)},
        {QStringLiteral("word/document.xml"), body.bytes()},
        {QStringLiteral("word/_rels/document.xml.rels"), bodyRelationships(writer.images(), withLogo)},
    };
    if (withLogo) {
        entries.push_back({QStringLiteral("word/footer1.xml"), footer()});
        entries.push_back({QStringLiteral("word/_rels/footer1.xml.rels"), footerRelationships()});
        entries.push_back({QStringLiteral("word/media/odeleaf-logo.png"), *options.logo});
    }
    for (const ExportImage &image : writer.images())
        entries.push_back({QStringLiteral("word/media/") + image.fileName, image.data});
    return entries;
}

Result<QByteArray> DOCXExporter::data(const ExportDocument &document, const Options &options)
{
    return ZipArchive(parts(document, options)).data();
}

Result<void> DOCXExporter::write(const ExportDocument &document, const QString &path)
{
    const auto bytes = data(document, Options::current());
    if (!bytes)
        return Error{bytes.error()};
    return AtomicFileWriter::write(path, *bytes);
}
