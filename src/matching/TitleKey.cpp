#include "matching/TitleKey.h"

#include <QTextBoundaryFinder>

namespace {

bool isKeptScalar(char32_t scalar)
{
    if (scalar == U'\t')
        return true;
    switch (QChar::category(scalar)) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Modifier:
    case QChar::Letter_Other:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Number_DecimalDigit:
    case QChar::Number_Letter:
    case QChar::Number_Other:
    case QChar::Separator_Space:
        return true;
    default:
        return false;
    }
}

void replaceUmlauts(QString &text)
{
    // The decomposed forms compare equal to the composed letters, so they go too.
    static const struct {
        QString from;
        QString to;
    } replacements[] = {
        {QStringLiteral("ä"), QStringLiteral("ae")}, {QStringLiteral("a\u0308"), QStringLiteral("ae")},
        {QStringLiteral("ö"), QStringLiteral("oe")}, {QStringLiteral("o\u0308"), QStringLiteral("oe")},
        {QStringLiteral("ü"), QStringLiteral("ue")}, {QStringLiteral("u\u0308"), QStringLiteral("ue")},
        {QStringLiteral("ß"), QStringLiteral("ss")},
    };
    for (const auto &r : replacements) {
        if (text.contains(r.from))
            text.replace(r.from, r.to);
    }
}

QString replaceOtherScalars(const QString &text)
{
    QString result;
    result.reserve(text.size());
    const qsizetype length = text.size();
    for (qsizetype i = 0; i < length; ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < length && text.at(i + 1).isLowSurrogate()) {
            const char32_t scalar = QChar::surrogateToUcs4(c, text.at(i + 1));
            if (isKeptScalar(scalar)) {
                result.append(c);
                result.append(text.at(i + 1));
            } else {
                result.append(QLatin1Char(' '));
            }
            ++i;
            continue;
        }
        result.append(isKeptScalar(c.unicode()) && !c.isSurrogate() ? c : QLatin1Char(' '));
    }
    return result;
}

QString collapseSpaces(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char(' ') && result.endsWith(QLatin1Char(' ')))
            continue;
        result.append(c);
    }
    return result;
}

bool hasMoreThanOneCharacter(const QString &piece)
{
    if (piece.size() < 2)
        return false;
    bool plain = true;
    for (const QChar c : piece)
        plain = plain && c.unicode() < 0x300;
    if (plain)
        return true;
    // A letter with combining marks is one character to the reader.
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, piece);
    const qsizetype firstEnd = graphemes.toNextBoundary();
    return firstEnd > 0 && firstEnd < piece.size();
}

const QSet<QString> &stopWords()
{
    static const QSet<QString> words = {
        QStringLiteral("der"),   QStringLiteral("die"),   QStringLiteral("das"),   QStringLiteral("und"),
        QStringLiteral("oder"),  QStringLiteral("ein"),   QStringLiteral("eine"),  QStringLiteral("einen"),
        QStringLiteral("einem"), QStringLiteral("einer"), QStringLiteral("im"),    QStringLiteral("in"),
        QStringLiteral("am"),    QStringLiteral("an"),    QStringLiteral("auf"),   QStringLiteral("aus"),
        QStringLiteral("zu"),    QStringLiteral("zum"),   QStringLiteral("zur"),   QStringLiteral("von"),
        QStringLiteral("mit"),   QStringLiteral("ohne"),  QStringLiteral("ich"),   QStringLiteral("du"),
        QStringLiteral("er"),    QStringLiteral("sie"),   QStringLiteral("es"),    QStringLiteral("wir"),
        QStringLiteral("ihr"),   QStringLiteral("man"),   QStringLiteral("nicht"), QStringLiteral("kein"),
        QStringLiteral("keine"),
    };
    return words;
}

} // namespace

QString normalize(const QString &title)
{
    QString key = title.toLower().trimmed();
    replaceUmlauts(key);
    key = collapseSpaces(replaceOtherScalars(key));
    return key.trimmed();
}

QSet<QString> tokenize(const QString &key)
{
    QSet<QString> tokens;
    const auto &stops = stopWords();
    for (const QStringView piece : QStringView(key).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString word = piece.toString();
        if (hasMoreThanOneCharacter(word) && !stops.contains(word))
            tokens.insert(word);
    }
    return tokens;
}
