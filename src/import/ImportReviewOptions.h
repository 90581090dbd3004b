#pragma once

#include <QCoreApplication>
#include <QString>

// The import settings of the review screen; a fresh set every time the review opens.
struct ImportReviewOptions {
    bool importDOCX = true;
    bool importPDF = false;
    bool onlyIfPoemTextEmpty = true;
    bool docxThenPdfOnlyForStillEmpty = true;
    double minScoreForPDF = 0.85;
    double minMarginForPDF = 0.08;
    int timeoutDOCX = 8; // seconds
    int timeoutPDF = 15; // seconds

    bool operator==(const ImportReviewOptions &other) const = default;

    static QString importDOCXLabel();
    static QString importPDFLabel();
    static QString onlyIfPoemTextEmptyLabel();
    static QString docxThenPdfOnlyForStillEmptyLabel();
    static QString minScoreForPDFLabel();
    static QString minMarginForPDFLabel();
    static QString timeoutDOCXText(int seconds);
    static QString timeoutPDFText(int seconds);
    static QString pdfRuleHint();

    Q_DECLARE_TR_FUNCTIONS(ImportReviewOptions)
};
