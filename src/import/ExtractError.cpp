#include "import/ExtractError.h"

ExtractError ExtractError::unsupportedExtension(const QString &extension)
{
    return {Kind::unsupportedExtension, extension};
}

ExtractError ExtractError::failed(const QString &message)
{
    return {Kind::failed, message};
}

ExtractError ExtractError::emptyText()
{
    return {Kind::emptyText, {}};
}

ExtractError ExtractError::pdfKitUnavailable()
{
    return {Kind::pdfKitUnavailable, {}};
}

QString ExtractError::description() const
{
    switch (m_kind) {
    case Kind::unsupportedExtension:
        return tr("Nicht unterstütztes Dateiformat: %1").arg(m_detail);
    case Kind::failed:
        return tr("Extraktion fehlgeschlagen: %1").arg(m_detail);
    case Kind::emptyText:
        return tr("Kein Text extrahiert (leer).");
    case Kind::pdfKitUnavailable:
        return tr("PDFKit nicht verfügbar.");
    }
    return {};
}

QString ExtractError::pdfCannotBeOpenedText()
{
    return tr("PDF konnte nicht geöffnet werden.");
}

bool ExtractError::isEmptyTextMessage(const QString &message)
{
    return message == QLatin1String("Kein Text extrahiert (leer).") || message == emptyText().description();
}
