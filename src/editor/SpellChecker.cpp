#include "editor/SpellChecker.h"

#include <QFileInfo>
#include <QTextBoundaryFinder>

#include <hunspell/hunspell.hxx>

namespace {

QString dictionaryName(const QString &language)
{
    return language == QLatin1String("en") ? QStringLiteral("en_US") : QStringLiteral("de_DE");
}

QList<TextRange> wordsOf(const QString &text)
{
    QList<TextRange> words;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    int start = (finder.boundaryReasons() & QTextBoundaryFinder::StartOfItem) ? 0 : -1;
    while (finder.toNextBoundary() >= 0) {
        const int position = int(finder.position());
        const auto reasons = finder.boundaryReasons();
        if (reasons & QTextBoundaryFinder::StartOfItem)
            start = position;
        if ((reasons & QTextBoundaryFinder::EndOfItem) && start >= 0) {
            words.append({start, position});
            start = -1;
        }
    }
    return words;
}

} // namespace

QStringList SpellChecker::dictionaryFolders()
{
    return {QStringLiteral("/usr/share/hunspell"), QStringLiteral("/usr/share/myspell/dicts"),
            QStringLiteral("/usr/share/myspell")};
}

SpellChecker::SpellChecker(const QString &language)
{
    load(m_primary, language == QLatin1String("en") ? QStringLiteral("en") : QStringLiteral("de"));
    load(m_other, m_primary.language == QLatin1String("en") ? QStringLiteral("de") : QStringLiteral("en"));
}

SpellChecker::~SpellChecker() = default;

void SpellChecker::load(Dictionary &dictionary, const QString &language)
{
    dictionary.language = language;
    const QString name = dictionaryName(language);
    for (const QString &folder : dictionaryFolders()) {
        const QString affix = folder + QLatin1Char('/') + name + QStringLiteral(".aff");
        const QString words = folder + QLatin1Char('/') + name + QStringLiteral(".dic");
        if (QFileInfo::exists(affix) && QFileInfo::exists(words)) {
            dictionary.hunspell =
                std::make_unique<Hunspell>(QFile::encodeName(affix).constData(), QFile::encodeName(words).constData());
            return;
        }
    }
}

bool SpellChecker::isCheckable(const QString &word)
{
    if (word.size() < 2)
        return false;
    bool hasLetter = false;
    for (const QChar c : word) {
        if (c.isDigit())
            return false;
        hasLetter = hasLetter || c.isLetter();
    }
    return hasLetter;
}

bool SpellChecker::Dictionary::accepts(const QString &word)
{
    const auto answer = known.constFind(word);
    if (answer != known.constEnd())
        return *answer;
    // The dictionaries are UTF-8.
    const bool correct = hunspell->spell(word.toStdString());
    known.insert(word, correct);
    return correct;
}

SpellChecker::Dictionary &SpellChecker::dictionaryFor(const QString &paragraph)
{
    if (!m_other.hunspell || !m_primary.hunspell)
        return m_primary;
    int primaryKnows = 0;
    int otherKnows = 0;
    for (const TextRange &range : wordsOf(paragraph)) {
        const QString word = paragraph.mid(range.start, range.end - range.start);
        if (!isCheckable(word) || m_ignored.contains(word))
            continue;
        primaryKnows += m_primary.accepts(word) ? 1 : 0;
        otherKnows += m_other.accepts(word) ? 1 : 0;
    }
    return otherKnows > primaryKnows ? m_other : m_primary;
}

QString SpellChecker::paragraphLanguage(const QString &paragraph)
{
    return dictionaryFor(paragraph).language;
}

bool SpellChecker::isCorrect(const QString &word, const QString &paragraph)
{
    if (!m_primary.hunspell || !isCheckable(word) || m_ignored.contains(word))
        return true;
    return dictionaryFor(paragraph).accepts(word);
}

QStringList SpellChecker::suggestions(const QString &word, int limit, const QString &paragraph)
{
    QStringList result;
    if (!m_primary.hunspell)
        return result;
    for (const std::string &suggestion : dictionaryFor(paragraph).hunspell->suggest(word.toStdString())) {
        result.append(QString::fromStdString(suggestion));
        if (result.size() >= limit)
            break;
    }
    return result;
}

void SpellChecker::ignore(const QString &word)
{
    m_ignored.insert(word);
}

QList<TextRange> SpellChecker::misspellings(const QString &text)
{
    QList<TextRange> found;
    if (!m_primary.hunspell)
        return found;
    Dictionary &dictionary = dictionaryFor(text);
    for (const TextRange &range : wordsOf(text)) {
        const QString word = text.mid(range.start, range.end - range.start);
        if (isCheckable(word) && !m_ignored.contains(word) && !dictionary.accepts(word))
            found.append(range);
    }
    return found;
}

std::optional<TextRange> SpellChecker::nextMisspelling(const QString &text, int from)
{
    const QList<TextRange> all = misspellings(text);
    if (all.isEmpty())
        return std::nullopt;
    for (const TextRange &range : all) {
        if (range.start >= from)
            return range;
    }
    return all.first();
}
