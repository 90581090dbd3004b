#include "editor/PoemPieces.h"

#include "editor/AppTheme.h"
#include "editor/WriterTypingAttributes.h"

#include <QCoreApplication>

namespace {

QTextBlockFormat centred(double spacingAfter)
{
    QTextBlockFormat format;
    format.setAlignment(Qt::AlignHCenter);
    format.setBottomMargin(spacingAfter);
    return format;
}

} // namespace

QTextBlockFormat PoemPieces::imageParagraph()
{
    return centred(14);
}

QString PoemPieces::captionText()
{
    return QCoreApplication::translate("PoemPieces", "Bildunterschrift");
}

QTextBlockFormat PoemPieces::captionParagraph()
{
    return centred(12);
}

QTextCharFormat PoemPieces::captionCharacters()
{
    return WriterTypingAttributes::pieceFormat(14, false, true, AppTheme::secondaryLabel());
}

QString PoemPieces::sectionMarkText()
{
    return QStringLiteral("* * *");
}

QTextBlockFormat PoemPieces::sectionMarkParagraph()
{
    return centred(18);
}

QTextCharFormat PoemPieces::sectionMarkCharacters()
{
    return WriterTypingAttributes::pieceFormat(18, true, false, AppTheme::secondaryLabel());
}
