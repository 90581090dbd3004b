// Writes arbitrary poem texts as DOCX parts: the input, read as UTF-16 code units, gives the
// title, a meta line, the text and the font name, split at U+FDD0; its first byte chooses a
// plain or a formatted body. Every part must be XML that a reader accepts, and the title
// must come back with only the characters XML forbids missing.
#include "editor/PoemTextDocument.h"
#include "export/DOCXExporter.h"

#include <QGuiApplication>
#include <QTextCursor>
#include <QXmlStreamReader>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static QGuiApplication application(*argc, *argv);
    return 0;
}

namespace {

bool allowedInXml(char32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           c >= 0x10000;
}

// What an XML reader gives back for the text: forbidden characters gone, line ends as LF.
QString readBack(const QString &text)
{
    QString kept;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            kept += c;
            kept += text.at(++i);
        } else if (!c.isSurrogate() && allowedInXml(c.unicode())) {
            kept += c;
        }
    }
    kept.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    kept.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return kept;
}

// Parses the whole part; the text of the first element of that name, if one is asked for.
QString parse(const QByteArray &xml, QStringView element = {})
{
    QXmlStreamReader reader(xml);
    QString found;
    bool seen = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!seen && !element.isEmpty() && reader.isStartElement() && reader.qualifiedName() == element) {
            seen = true;
            found = reader.readElementText();
        }
    }
    if (reader.hasError())
        std::abort();
    return found;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    const bool formatted = data[0] & 1;
    const QString input(reinterpret_cast<const QChar *>(data + 1), qsizetype((size - 1) / 2));
    const QStringList pieces = input.split(QChar(0xFDD0));
    const auto piece = [&pieces](qsizetype i) { return i < pieces.size() ? pieces.at(i) : QString(); };

    ExportDocument document;
    document.title = piece(0);
    document.metaLines = {piece(1)};
    document.plainText = piece(2);
    if (formatted) {
        auto rich = std::make_shared<PoemTextDocument>();
        QTextCursor cursor(rich.get());
        QTextCharFormat format;
        format.setFontFamilies({piece(3)});
        format.setFontWeight(QFont::Bold);
        cursor.insertText(piece(2), format);
        document.richText = rich;
    }
    const DOCXExporter::Options options{piece(3), QDateTime(QDate(2024, 3, 1), QTime(12, 0), Qt::UTC), std::nullopt};
    for (const ZipArchive::Entry &part : DOCXExporter::parts(document, options)) {
        if (part.path == QLatin1String("docProps/core.xml")) {
            if (parse(part.data, u"dc:title") != readBack(document.title))
                std::abort();
        } else if (part.path.endsWith(QLatin1String(".xml")) || part.path.endsWith(QLatin1String(".rels"))) {
            parse(part.data);
        }
    }
    return 0;
}
