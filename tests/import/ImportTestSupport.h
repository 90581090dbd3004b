#pragma once

#include "archive/ArchiveContext.h"
#include "archive/PoemEdit.h"
#include "import/ImportProposal.h"
#include "matching/MatchCandidate.h"

#include <QFile>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <zip.h>

// Shared helpers of the import tests: documents written on the spot, poems and proposals.
namespace ImportTestSupport {

inline QByteArray escaped(const QString &text)
{
    return text.toHtmlEscaped().toUtf8();
}

// A one-page DOCX: one paragraph per line; a line starting with "*" is bold, one starting
// with ">" is centred.
inline bool writeDocx(const QString &path, const QStringList &lines)
{
    QByteArray body;
    for (const QString &line : lines) {
        QByteArray paragraph = "<w:p>";
        QString text = line;
        QByteArray runProperties;
        if (text.startsWith(QLatin1Char('>'))) {
            paragraph += "<w:pPr><w:jc w:val=\"center\"/></w:pPr>";
            text.remove(0, 1);
        }
        if (text.startsWith(QLatin1Char('*'))) {
            runProperties = "<w:rPr><w:b/></w:rPr>";
            text.remove(0, 1);
        }
        if (!text.isEmpty())
            paragraph += "<w:r>" + runProperties + "<w:t xml:space=\"preserve\">" + escaped(text) + "</w:t></w:r>";
        body += paragraph + "</w:p>";
    }
    const QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><w:document "
                           "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"><w:body>" +
                           body + "</w:body></w:document>";
    int error = 0;
    zip_t *archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive)
        return false;
    zip_source_t *source = zip_source_buffer(archive, xml.constData(), zip_uint64_t(xml.size()), 0);
    const bool added = source && zip_file_add(archive, "word/document.xml", source, ZIP_FL_ENC_UTF_8) >= 0;
    return zip_close(archive) == 0 && added;
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline PoemPtr addPoem(ArchiveContext &context, const QString &title, const std::optional<QString> &text = {})
{
    PoemPtr poem = context.insertPoem();
    poem->setId(QUuid::createUuid());
    PoemEdit::setTitle(*poem, title);
    poem->setText(text);
    return poem;
}

// A file chosen for a poem, with the scores the matcher would have given.
inline ImportProposal proposalFor(const QString &relativePath, const PoemPtr &poem, double best = 1.0,
                                  std::optional<double> second = std::nullopt)
{
    ImportProposal proposal;
    proposal.relativePath = relativePath;
    proposal.fileName = relativePath.section(QLatin1Char('/'), -1);
    const QString id = poem->id()->toString(QUuid::WithoutBraces).toUpper();
    proposal.candidates.append({id, poem->title().value_or(QString()), best});
    if (second)
        proposal.candidates.append(
            {QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(), QStringLiteral("Anderes"), *second});
    proposal.suggestedPoemObjectURI = id;
    proposal.suggestedScore = best;
    proposal.chosenPoemObjectURI = id;
    return proposal;
}

} // namespace ImportTestSupport
