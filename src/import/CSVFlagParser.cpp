#include "import/CSVFlagParser.h"

#include <QStringList>

std::optional<bool> CSVFlagParser::parseBool(const QString &text)
{
    static const QStringList yes = {QStringLiteral("1"),  QStringLiteral("true"), QStringLiteral("yes"),
                                    QStringLiteral("ja"), QStringLiteral("j"),    QStringLiteral("x")};
    static const QStringList no = {QStringLiteral("0"), QStringLiteral("false"), QStringLiteral("no"),
                                   QStringLiteral("nein"), QStringLiteral("n")};
    const QString value = text.trimmed().toLower();
    if (yes.contains(value))
        return true;
    if (no.contains(value))
        return false;
    return std::nullopt;
}

std::optional<bool> CSVFlagParser::parsePublished(const QString &text)
{
    static const QStringList unpublished = {QStringLiteral("n. veröf."), QStringLiteral("n. veröf"),
                                            QStringLiteral("n. veroeff"), QStringLiteral("nicht veroeffentlicht")};
    if (unpublished.contains(text.trimmed().toLower()))
        return false;
    return parseBool(text);
}
