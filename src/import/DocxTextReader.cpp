#include "import/DocxTextReader.h"

#include "import/DocxPackage.h"

#include <QHash>
#include <QXmlStreamReader>

#include <optional>

namespace {

const QString documentPart = QStringLiteral("word/document.xml");
const QString stylesPart = QStringLiteral("word/styles.xml");

bool isWordNamespace(QStringView uri)
{
    return uri == QLatin1String("http://schemas.openxmlformats.org/wordprocessingml/2006/main") ||
           uri == QLatin1String("http://purl.oclc.org/ooxml/wordprocessingml/main");
}

// Attributes as a layer: unset values fall through to the layer below.
struct RunProperties {
    std::optional<bool> bold;
    std::optional<bool> italic;
    std::optional<bool> underline;
    std::optional<QString> fontFamily;
    std::optional<double> pointSize;
    std::optional<QColor> color; // invalid: automatic
    QString characterStyle;      // only on a run's own properties

    void overlay(const RunProperties &top)
    {
        if (top.bold)
            bold = top.bold;
        if (top.italic)
            italic = top.italic;
        if (top.underline)
            underline = top.underline;
        if (top.fontFamily)
            fontFamily = top.fontFamily;
        if (top.pointSize)
            pointSize = top.pointSize;
        if (top.color)
            color = top.color;
    }
};

struct Style {
    QString basedOn;
    RunProperties run;
    std::optional<Qt::Alignment> alignment;
};

struct StyleSheet {
    RunProperties defaults;
    std::optional<Qt::Alignment> defaultAlignment;
    QHash<QString, Style> styles;
    QString defaultParagraphStyle;

    // The style with everything it inherits; a cycle or a very long chain stops early.
    Style resolved(const QString &styleId) const
    {
        QList<const Style *> chain;
        QString id = styleId;
        while (!id.isEmpty() && chain.size() < 32) {
            const auto found = styles.constFind(id);
            if (found == styles.constEnd())
                break;
            chain.prepend(&*found);
            id = found->basedOn;
        }
        Style result;
        for (const Style *style : chain) {
            result.run.overlay(style->run);
            if (style->alignment)
                result.alignment = style->alignment;
        }
        return result;
    }
};

QString attribute(const QXmlStreamReader &xml, QLatin1String name)
{
    for (const QXmlStreamAttribute &a : xml.attributes()) {
        if (a.name() == name && isWordNamespace(a.namespaceUri()))
            return a.value().toString();
    }
    return {};
}

bool hasAttribute(const QXmlStreamReader &xml, QLatin1String name)
{
    for (const QXmlStreamAttribute &a : xml.attributes()) {
        if (a.name() == name && isWordNamespace(a.namespaceUri()))
            return true;
    }
    return false;
}

// <w:b/>, <w:b w:val="true"/>, <w:b w:val="0"/>
bool toggleValue(const QXmlStreamReader &xml)
{
    if (!hasAttribute(xml, QLatin1String("val")))
        return true;
    const QString value = attribute(xml, QLatin1String("val"));
    return !(value == QLatin1String("0") || value == QLatin1String("false") || value == QLatin1String("off"));
}

std::optional<Qt::Alignment> alignmentValue(const QString &value)
{
    if (value == QLatin1String("center"))
        return Qt::AlignHCenter;
    if (value == QLatin1String("right") || value == QLatin1String("end"))
        return Qt::AlignRight;
    if (value == QLatin1String("both") || value == QLatin1String("distribute"))
        return Qt::AlignJustify;
    if (value == QLatin1String("left") || value == QLatin1String("start"))
        return Qt::AlignLeft;
    return std::nullopt;
}

// Walks the children of the current element, calling visit for each child start tag;
// visit either reads the child or leaves it to be skipped.
template <typename Visit> void forEachChild(QXmlStreamReader &xml, Visit visit)
{
    while (xml.readNextStartElement()) {
        const bool consumed = visit();
        if (!consumed)
            xml.skipCurrentElement();
    }
}

RunProperties readRunProperties(QXmlStreamReader &xml)
{
    RunProperties properties;
    forEachChild(xml, [&] {
        if (!isWordNamespace(xml.namespaceUri()))
            return false;
        const QStringView name = xml.name();
        if (name == QLatin1String("rStyle")) {
            properties.characterStyle = attribute(xml, QLatin1String("val"));
        } else if (name == QLatin1String("b")) {
            properties.bold = toggleValue(xml);
        } else if (name == QLatin1String("i")) {
            properties.italic = toggleValue(xml);
        } else if (name == QLatin1String("u")) {
            const QString value = attribute(xml, QLatin1String("val"));
            properties.underline = value != QLatin1String("none");
        } else if (name == QLatin1String("rFonts")) {
            for (const auto key : {QLatin1String("ascii"), QLatin1String("hAnsi"), QLatin1String("cs")}) {
                const QString family = attribute(xml, key);
                if (!family.isEmpty()) {
                    properties.fontFamily = family;
                    break;
                }
            }
        } else if (name == QLatin1String("sz")) {
            bool ok = false;
            const double halfPoints = attribute(xml, QLatin1String("val")).toDouble(&ok);
            if (ok && halfPoints > 0 && halfPoints <= 3276)
                properties.pointSize = halfPoints / 2.0;
        } else if (name == QLatin1String("color")) {
            const QString value = attribute(xml, QLatin1String("val"));
            const QColor color = value.size() == 6 ? QColor(QLatin1Char('#') + value) : QColor();
            properties.color = color;
        }
        return false;
    });
    return properties;
}

struct ParagraphProperties {
    QString styleId;
    std::optional<Qt::Alignment> alignment;
};

ParagraphProperties readParagraphProperties(QXmlStreamReader &xml)
{
    ParagraphProperties properties;
    forEachChild(xml, [&] {
        if (!isWordNamespace(xml.namespaceUri()))
            return false;
        if (xml.name() == QLatin1String("pStyle"))
            properties.styleId = attribute(xml, QLatin1String("val"));
        else if (xml.name() == QLatin1String("jc"))
            properties.alignment = alignmentValue(attribute(xml, QLatin1String("val")));
        return false;
    });
    return properties;
}

QString xmlFailureText(const QXmlStreamReader &xml)
{
    return DocxTextReader::tr("Das Dokument-XML ist fehlerhaft (Zeile %1): %2")
        .arg(xml.lineNumber())
        .arg(xml.errorString());
}

// A DTD has no business in a DOCX part; refusing it rules out entity expansion tricks.
bool refuseDtd(QXmlStreamReader &xml)
{
    if (xml.tokenType() != QXmlStreamReader::DTD)
        return false;
    xml.raiseError(DocxTextReader::tr("Dokumenttypdefinitionen werden nicht gelesen."));
    return true;
}

StyleSheet parseStyles(const QByteArray &stylesXml)
{
    StyleSheet sheet;
    if (stylesXml.isEmpty())
        return sheet;
    QXmlStreamReader xml(stylesXml);
    while (!xml.atEnd()) {
        xml.readNext();
        if (refuseDtd(xml))
            break;
        if (!xml.isStartElement() || !isWordNamespace(xml.namespaceUri()))
            continue;
        const QStringView name = xml.name();
        if (name == QLatin1String("rPrDefault")) {
            forEachChild(xml, [&] {
                if (xml.name() != QLatin1String("rPr"))
                    return false;
                sheet.defaults = readRunProperties(xml);
                return true;
            });
        } else if (name == QLatin1String("pPrDefault")) {
            forEachChild(xml, [&] {
                if (xml.name() != QLatin1String("pPr"))
                    return false;
                sheet.defaultAlignment = readParagraphProperties(xml).alignment;
                return true;
            });
        } else if (name == QLatin1String("style")) {
            const QString type = attribute(xml, QLatin1String("type"));
            const QString id = attribute(xml, QLatin1String("styleId"));
            const QString isDefault = attribute(xml, QLatin1String("default"));
            if (type == QLatin1String("paragraph") &&
                (isDefault == QLatin1String("1") || isDefault == QLatin1String("true")))
                sheet.defaultParagraphStyle = id;
            Style style;
            forEachChild(xml, [&] {
                if (!isWordNamespace(xml.namespaceUri()))
                    return false;
                if (xml.name() == QLatin1String("basedOn")) {
                    style.basedOn = attribute(xml, QLatin1String("val"));
                } else if (xml.name() == QLatin1String("rPr")) {
                    style.run = readRunProperties(xml);
                    return true;
                } else if (xml.name() == QLatin1String("pPr")) {
                    style.alignment = readParagraphProperties(xml).alignment;
                    return true;
                }
                return false;
            });
            if (!id.isEmpty())
                sheet.styles.insert(id, style);
        }
    }
    // Broken styles cost the formatting, never the text.
    return xml.hasError() ? StyleSheet() : sheet;
}

TextAttributes finalAttributes(const RunProperties &p, Qt::Alignment alignment)
{
    TextAttributes attributes;
    attributes.bold = p.bold.value_or(false);
    attributes.italic = p.italic.value_or(false);
    attributes.underline = p.underline.value_or(false);
    attributes.fontFamily = p.fontFamily.value_or(QString());
    attributes.pointSize = p.pointSize.value_or(0.0);
    attributes.color = p.color.value_or(QColor());
    attributes.alignment = alignment;
    return attributes;
}

// Walks document.xml without recursion of its own, so deep nesting cannot exhaust the stack.
class DocumentWalker {
public:
    DocumentWalker(const QByteArray &documentXml, const StyleSheet &styles) : m_xml(documentXml), m_styles(styles) {}

    Result<AttributedText> run()
    {
        while (!m_xml.atEnd()) {
            m_xml.readNext();
            if (refuseDtd(m_xml))
                break;
            if (m_xml.isStartElement())
                startElement();
            else if (m_xml.isEndElement())
                endElement();
        }
        if (m_xml.hasError())
            return Error{xmlFailureText(m_xml)};
        return m_text;
    }

private:
    void startElement()
    {
        if (!isWordNamespace(m_xml.namespaceUri())) {
            // Alternate content carries drawings and text boxes in two forms; both go.
            if (m_xml.name() == QLatin1String("AlternateContent"))
                m_xml.skipCurrentElement();
            return;
        }
        const QStringView name = m_xml.name();
        if (name == QLatin1String("p")) {
            startParagraph();
        } else if (name == QLatin1String("pPr")) {
            applyParagraphProperties(readParagraphProperties(m_xml));
        } else if (name == QLatin1String("r")) {
            m_runProperties = m_paragraphRun;
        } else if (name == QLatin1String("rPr")) {
            const RunProperties direct = readRunProperties(m_xml);
            m_runProperties = m_paragraphRun;
            if (!direct.characterStyle.isEmpty())
                m_runProperties.overlay(m_styles.resolved(direct.characterStyle).run);
            m_runProperties.overlay(direct);
        } else if (name == QLatin1String("t")) {
            appendText(m_xml.readElementText(QXmlStreamReader::SkipChildElements));
        } else if (name == QLatin1String("tab")) {
            appendText(QStringLiteral("\t"));
        } else if (name == QLatin1String("br") || name == QLatin1String("cr")) {
            appendText(QStringLiteral("\n"));
        } else if (name == QLatin1String("noBreakHyphen")) {
            appendText(QStringLiteral("-"));
        } else if (isDropped(name)) {
            m_xml.skipCurrentElement();
        }
    }

    void endElement()
    {
        // A run's properties end with the run.
        if (isWordNamespace(m_xml.namespaceUri()) && m_xml.name() == QLatin1String("r"))
            m_runProperties = m_paragraphRun;
    }

    static bool isDropped(QStringView name)
    {
        for (const char *dropped : {"drawing", "pict", "object", "del", "moveFrom", "delText", "instrText", "sectPr",
                                    "footnoteReference", "endnoteReference", "commentReference", "sym", "fldData"}) {
            if (name == QLatin1String(dropped))
                return true;
        }
        return false;
    }

    void startParagraph()
    {
        // The line break carries the attributes of the text before it.
        if (m_paragraphCount++ > 0)
            m_text.append(QStringLiteral("\n"), m_lastAttributes);
        applyParagraphProperties({});
    }

    void applyParagraphProperties(const ParagraphProperties &properties)
    {
        const QString styleId = properties.styleId.isEmpty() ? m_styles.defaultParagraphStyle : properties.styleId;
        const Style style = m_styles.resolved(styleId);
        m_paragraphRun = m_styles.defaults;
        m_paragraphRun.overlay(style.run);
        m_alignment =
            properties.alignment.value_or(style.alignment.value_or(m_styles.defaultAlignment.value_or(Qt::AlignLeft)));
        m_runProperties = m_paragraphRun;
    }

    void appendText(const QString &text)
    {
        m_lastAttributes = currentAttributes();
        m_text.append(text, m_lastAttributes);
    }

    TextAttributes currentAttributes() const { return finalAttributes(m_runProperties, m_alignment); }

    QXmlStreamReader m_xml;
    const StyleSheet &m_styles;
    AttributedText m_text;
    RunProperties m_paragraphRun;
    RunProperties m_runProperties;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    TextAttributes m_lastAttributes;
    int m_paragraphCount = 0;
};

} // namespace

Result<AttributedText> DocxTextReader::read(const QString &path)
{
    auto package = DocxPackage::open(path);
    if (!package)
        return package.error();
    if (!package->contains(documentPart))
        return Error{tr("Die Datei ist kein Word-Dokument (word/document.xml fehlt).")};
    const auto document = package->read(documentPart);
    if (!document)
        return document.error();
    QByteArray styles;
    if (package->contains(stylesPart)) {
        if (auto read = package->read(stylesPart); read)
            styles = *read;
    }
    return parse(*document, styles);
}

Result<AttributedText> DocxTextReader::parse(const QByteArray &documentXml, const QByteArray &stylesXml)
{
    const StyleSheet styles = parseStyles(stylesXml);
    return DocumentWalker(documentXml, styles).run();
}
