#include "verse/LineSound.h"

#include "verse/Pronouncer.h"

#include <QSet>

namespace {

bool isApostrophe(QChar c)
{
    return c == QLatin1Char('\'') || c == QChar(0x2019);
}

// "'s", "Th'": a consonant leaning on its neighbour through an apostrophe adds no syllable,
// though spoken alone it would be read as a letter's name.
bool isClitic(const QString &line, const LineSound::Word &word)
{
    const bool apostrophe = (word.start > 0 && isApostrophe(line.at(word.start - 1))) ||
                            (word.end < line.size() && isApostrophe(line.at(word.end)));
    if (!apostrophe)
        return false;
    static const QString vowels = QStringLiteral("aeiouyäöüAEIOUYÄÖÜ");
    for (int i = word.start; i < word.end; ++i) {
        if (vowels.contains(line.at(i)))
            return false;
    }
    return true;
}

} // namespace

QList<LineSound::Word> LineSound::wordsOf(const QString &line)
{
    QList<Word> words;
    qsizetype i = 0;
    while (i < line.size()) {
        if (!line.at(i).isLetter()) {
            ++i;
            continue;
        }
        const qsizetype start = i;
        while (i < line.size() && (line.at(i).isLetter() || line.at(i).isMark() ||
                                   (isApostrophe(line.at(i)) && i + 1 < line.size() && line.at(i + 1).isLetter())))
            ++i;
        words.append({int(start), int(i)});
    }
    return words;
}

bool LineSound::isWeakMonosyllable(const QString &word, const QString &language)
{
    // Only a tie-breaker between metres that fit equally well, never a stress of its own.
    static const QSet<QString> german = {
        QStringLiteral("der"),  QStringLiteral("die"),   QStringLiteral("das"),  QStringLiteral("den"),
        QStringLiteral("dem"),  QStringLiteral("des"),   QStringLiteral("ein"),  QStringLiteral("und"),
        QStringLiteral("oder"), QStringLiteral("doch"),  QStringLiteral("wie"),  QStringLiteral("als"),
        QStringLiteral("so"),   QStringLiteral("zu"),    QStringLiteral("im"),   QStringLiteral("in"),
        QStringLiteral("an"),   QStringLiteral("am"),    QStringLiteral("auf"),  QStringLiteral("aus"),
        QStringLiteral("bei"),  QStringLiteral("mit"),   QStringLiteral("nach"), QStringLiteral("von"),
        QStringLiteral("vor"),  QStringLiteral("zum"),   QStringLiteral("zur"),  QStringLiteral("für"),
        QStringLiteral("um"),   QStringLiteral("durch"), QStringLiteral("ob"),   QStringLiteral("daß"),
        QStringLiteral("dass"), QStringLiteral("wenn"),  QStringLiteral("ich"),  QStringLiteral("du"),
        QStringLiteral("er"),   QStringLiteral("sie"),   QStringLiteral("es"),   QStringLiteral("wir"),
        QStringLiteral("ihr"),  QStringLiteral("mich"),  QStringLiteral("dich"), QStringLiteral("sich"),
        QStringLiteral("mir"),  QStringLiteral("dir"),   QStringLiteral("ihn"),  QStringLiteral("ihm"),
        QStringLiteral("uns"),  QStringLiteral("euch"),  QStringLiteral("mein"), QStringLiteral("dein"),
        QStringLiteral("ist"),  QStringLiteral("hat"),   QStringLiteral("war"),  QStringLiteral("bin"),
        QStringLiteral("bist"), QStringLiteral("sind"),  QStringLiteral("hab"),  QStringLiteral("da"),
        QStringLiteral("wo"),   QStringLiteral("was"),   QStringLiteral("man"),  QStringLiteral("nun"),
    };
    static const QSet<QString> english = {
        QStringLiteral("a"),     QStringLiteral("an"),    QStringLiteral("the"),    QStringLiteral("and"),
        QStringLiteral("or"),    QStringLiteral("but"),   QStringLiteral("nor"),    QStringLiteral("of"),
        QStringLiteral("to"),    QStringLiteral("in"),    QStringLiteral("on"),     QStringLiteral("at"),
        QStringLiteral("by"),    QStringLiteral("for"),   QStringLiteral("from"),   QStringLiteral("with"),
        QStringLiteral("as"),    QStringLiteral("is"),    QStringLiteral("are"),    QStringLiteral("was"),
        QStringLiteral("were"),  QStringLiteral("be"),    QStringLiteral("am"),     QStringLiteral("i"),
        QStringLiteral("you"),   QStringLiteral("he"),    QStringLiteral("she"),    QStringLiteral("it"),
        QStringLiteral("we"),    QStringLiteral("they"),  QStringLiteral("me"),     QStringLiteral("him"),
        QStringLiteral("her"),   QStringLiteral("us"),    QStringLiteral("them"),   QStringLiteral("my"),
        QStringLiteral("his"),   QStringLiteral("its"),   QStringLiteral("our"),    QStringLiteral("your"),
        QStringLiteral("their"), QStringLiteral("that"),  QStringLiteral("which"),  QStringLiteral("who"),
        QStringLiteral("this"),  QStringLiteral("if"),    QStringLiteral("so"),     QStringLiteral("than"),
        QStringLiteral("when"),  QStringLiteral("do"),    QStringLiteral("does"),   QStringLiteral("did"),
        QStringLiteral("shall"), QStringLiteral("will"),  QStringLiteral("can"),    QStringLiteral("has"),
        QStringLiteral("have"),  QStringLiteral("had"),   QStringLiteral("thou"),   QStringLiteral("thee"),
        QStringLiteral("thy"),   QStringLiteral("art"),   QStringLiteral("hath"),   QStringLiteral("doth"),
        QStringLiteral("could"), QStringLiteral("would"), QStringLiteral("should"), QStringLiteral("may"),
        QStringLiteral("might"), QStringLiteral("must"),
    };
    const QString lower = word.toLower();
    return language == QLatin1String("en") ? english.contains(lower) : german.contains(lower);
}

LineSound LineSound::of(const QString &line, const QString &language, Pronouncer &pronouncer)
{
    LineSound sound;
    sound.words = wordsOf(line);
    for (int w = 0; w < sound.words.size(); ++w) {
        const Word &range = sound.words.at(w);
        const QString word = line.mid(range.start, range.end - range.start);
        if (isClitic(line, range))
            continue;
        const WordSound spoken = pronouncer.pronounce(word, language);
        const bool monosyllable = spoken.syllableCount() == 1;
        const bool weak = monosyllable && isWeakMonosyllable(word, language);
        for (const LexicalStress stress : spoken.stresses)
            sound.syllables.append({stress, monosyllable, weak, w});
        if (spoken.syllableCount() > 0)
            sound.rhymeTail = spoken.rhymeTail();
    }
    // Before r German does not tell open from closed e ("Erden" and "werden" rhyme), but
    // espeak-ng writes them apart.
    if (language == QLatin1String("de") && sound.rhymeTail.size() > 1 &&
        sound.rhymeTail.first() == QLatin1String("E") &&
        (sound.rhymeTail.at(1) == QLatin1String("r") || sound.rhymeTail.at(1) == QLatin1String("R")))
        sound.rhymeTail.first() = QStringLiteral("e:");
    return sound;
}
