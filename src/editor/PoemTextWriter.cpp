#include "editor/PoemTextWriter.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemEdit.h"

Result<void> PoemTextWriter::write(ArchiveContext &context, Poem &poem, const QByteArray &richTextData,
                                   const QString &plainText, const QDateTime &now)
{
    return PoemEdit::apply(
        context, poem,
        [&](Poem &p) {
            p.setRichTextData(richTextData);
            if (p.text() != plainText)
                p.setText(plainText);
        },
        now);
}
