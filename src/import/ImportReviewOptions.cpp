#include "import/ImportReviewOptions.h"

QString ImportReviewOptions::importDOCXLabel()
{
    return tr("DOCX importieren");
}

QString ImportReviewOptions::importPDFLabel()
{
    return tr("PDF importieren");
}

QString ImportReviewOptions::onlyIfPoemTextEmptyLabel()
{
    return tr("Nur wenn Gedichttext leer");
}

QString ImportReviewOptions::docxThenPdfOnlyForStillEmptyLabel()
{
    return tr("DOCX zuerst, PDF nur noch wenn danach leer");
}

QString ImportReviewOptions::minScoreForPDFLabel()
{
    return tr("PDF Mindestscore:");
}

QString ImportReviewOptions::minMarginForPDFLabel()
{
    return tr("PDF Margin:");
}

QString ImportReviewOptions::timeoutDOCXText(int seconds)
{
    return tr("Timeout DOCX: %1s").arg(seconds);
}

QString ImportReviewOptions::timeoutPDFText(int seconds)
{
    return tr("Timeout PDF: %1s").arg(seconds);
}

QString ImportReviewOptions::pdfRuleHint()
{
    return tr("PDF import: Score ≥ Mindestscore UND (best - zweitbest) ≥ Margin.");
}
