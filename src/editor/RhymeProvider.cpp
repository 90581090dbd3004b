#include "editor/RhymeProvider.h"

#include "archive/AppPreferences.h"

QString rawValue(RhymeProvider provider)
{
    switch (provider) {
    case RhymeProvider::reimsuche:
        return QStringLiteral("reimsuche.de");
    case RhymeProvider::wasReimtSichAuf:
        return QStringLiteral("was-reimt-sich-auf.de");
    case RhymeProvider::reimOMat:
        return QStringLiteral("reim-o-mat.de");
    }
    return {};
}

QString title(RhymeProvider provider)
{
    return rawValue(provider);
}

QString siteRoot(RhymeProvider provider)
{
    switch (provider) {
    case RhymeProvider::reimsuche:
        return QStringLiteral("https://www.reimsuche.de");
    case RhymeProvider::wasReimtSichAuf:
        return QStringLiteral("https://www.was-reimt-sich-auf.de");
    case RhymeProvider::reimOMat:
        return QStringLiteral("https://www.reim-o-mat.de");
    }
    return {};
}

namespace {

QString caseName(RhymeProvider provider)
{
    switch (provider) {
    case RhymeProvider::reimsuche:
        return QStringLiteral("reimsuche");
    case RhymeProvider::wasReimtSichAuf:
        return QStringLiteral("wasReimtSichAuf");
    case RhymeProvider::reimOMat:
        return QStringLiteral("reimOMat");
    }
    return {};
}

} // namespace

std::optional<RhymeProvider> rhymeProviderFromName(const QString &name)
{
    const QString wanted = name.trimmed();
    for (const RhymeProvider provider : allRhymeProviders) {
        if (wanted.compare(rawValue(provider), Qt::CaseInsensitive) == 0 ||
            wanted.compare(caseName(provider), Qt::CaseInsensitive) == 0)
            return provider;
    }
    return std::nullopt;
}

RhymeProvider rhymeProviderFromIdentifier(const QString &identifier)
{
    for (const RhymeProvider provider : allRhymeProviders) {
        if (identifier == rawValue(provider))
            return provider;
    }
    return allRhymeProviders.front();
}

RhymeProvider defaultRhymeProvider()
{
    return rhymeProviderFromIdentifier(AppPreferences::defaultRhymeProvider());
}

QString RhymeLookup::normalizedRhymeWord(const QString &text)
{
    // Composed first: a decomposed umlaut is a letter and a combining mark, and the mark
    // would end the word.
    const QString trimmed = text.trimmed().normalized(QString::NormalizationForm_C);
    QString word;
    for (const char32_t c : trimmed.toUcs4()) {
        if (QChar::isLetter(c) || (!word.isEmpty() && QChar::isMark(c))) {
            word.append(QString::fromUcs4(&c, 1));
        } else if (!word.isEmpty()) {
            break;
        }
    }
    return word;
}

QByteArray RhymeLookup::encodedWord(const QString &word)
{
    // Unreserved characters and the colon stay; everything that could end a path segment or
    // a query value (/ ? # [ ] @ ! $ & ' ( ) * + , ; =) and everything else is encoded.
    return word.toUtf8().toPercentEncoding(QByteArrayLiteral(":"));
}

std::optional<QUrl> RhymeLookup::url(RhymeProvider provider, const QString &word)
{
    if (word.isEmpty())
        return std::nullopt;
    const QByteArray root = siteRoot(provider).toUtf8();
    const QByteArray encoded = encodedWord(word);
    QByteArray address;
    switch (provider) {
    case RhymeProvider::reimsuche:
        address = root + "/reime/" + encoded;
        break;
    case RhymeProvider::wasReimtSichAuf:
        address = root + "/" + encoded + ".html";
        break;
    case RhymeProvider::reimOMat:
        address = root + "/reimApp.php?reimwort=" + encoded;
        break;
    }
    const QUrl url = QUrl::fromEncoded(address, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}
