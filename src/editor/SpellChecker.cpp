#include "editor/SpellChecker.h"

#include "archive/AppPreferences.h"

#include <QFileInfo>
#include <QTextBoundaryFinder>

#include <hunspell/hunspell.hxx>

namespace {

QString dictionaryName(const QString &language)
{
    return language == QLatin1String("en") ? QStringLiteral("en_US") : QStringLiteral("de_DE");
}

} // namespace

QStringList SpellChecker::dictionaryFolders()
{
    return {QStringLiteral("/usr/share/hunspell"), QStringLiteral("/usr/share/myspell/dicts"),
            QStringLiteral("/usr/share/myspell")};
}

QString SpellChecker::languageForInterface()
{
    return AppPreferences::interfaceLanguage() == QLatin1String("en") ? QStringLiteral("en") : QStringLiteral("de");
}

SpellChecker::SpellChecker(const QString &language) : m_language(language)
{
    const QString name = dictionaryName(language);
    for (const QString &folder : dictionaryFolders()) {
        const QString affix = folder + QLatin1Char('/') + name + QStringLiteral(".aff");
        const QString words = folder + QLatin1Char('/') + name + QStringLiteral(".dic");
        if (QFileInfo::exists(affix) && QFileInfo::exists(words)) {
            m_hunspell =
                std::make_unique<Hunspell>(QFile::encodeName(affix).constData(), QFile::encodeName(words).constData());
            break;
        }
    }
}

SpellChecker::~SpellChecker() = default;

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

bool SpellChecker::isCorrect(const QString &word)
{
    if (!m_hunspell || !isCheckable(word))
        return true;
    const auto known = m_known.constFind(word);
    if (known != m_known.constEnd())
        return *known;
    // The dictionaries are UTF-8.
    const bool correct = m_hunspell->spell(word.toStdString());
    m_known.insert(word, correct);
    return correct;
}

QStringList SpellChecker::suggestions(const QString &word, int limit)
{
    QStringList result;
    if (!m_hunspell)
        return result;
    for (const std::string &suggestion : m_hunspell->suggest(word.toStdString())) {
        result.append(QString::fromStdString(suggestion));
        if (result.size() >= limit)
            break;
    }
    return result;
}

void SpellChecker::ignore(const QString &word)
{
    m_known.insert(word, true);
}

QList<TextRange> SpellChecker::misspellings(const QString &text)
{
    QList<TextRange> found;
    if (!m_hunspell)
        return found;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    int start = (finder.boundaryReasons() & QTextBoundaryFinder::StartOfItem) ? 0 : -1;
    while (finder.toNextBoundary() >= 0) {
        const int position = int(finder.position());
        const auto reasons = finder.boundaryReasons();
        if (reasons & QTextBoundaryFinder::StartOfItem)
            start = position;
        if ((reasons & QTextBoundaryFinder::EndOfItem) && start >= 0) {
            const QString word = text.mid(start, position - start);
            if (!isCorrect(word))
                found.append({start, position});
            start = -1;
        }
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
