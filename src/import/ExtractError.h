#pragma once

#include "archive/Result.h"

#include <QCoreApplication>
#include <QString>

// Why a document gave no text, with the sentence the import shows for it.
class ExtractError {
    Q_DECLARE_TR_FUNCTIONS(ExtractError)

public:
    enum class Kind { unsupportedExtension, failed, emptyText, pdfKitUnavailable };

    static ExtractError unsupportedExtension(const QString &extension);
    static ExtractError failed(const QString &message);
    static ExtractError emptyText();
    // Kept for completeness: never raised while poppler is linked in.
    static ExtractError pdfKitUnavailable();

    Kind kind() const { return m_kind; }
    QString description() const;
    operator Error() const { return Error{description()}; }

    static QString pdfCannotBeOpenedText();
    // The helper process answers in German whatever the window's language is.
    static bool isEmptyTextMessage(const QString &message);

private:
    ExtractError(Kind kind, QString detail) : m_kind(kind), m_detail(std::move(detail)) {}

    Kind m_kind;
    QString m_detail;
};
