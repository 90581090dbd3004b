#include "verse/ImpureRhyme.h"

#include <QHash>

#include <algorithm>

namespace {

QString relaxedVowel(QString vowel)
{
    vowel.remove(QLatin1Char(':'));
    static const QHash<QString, QString> unrounded = {
        {QStringLiteral("y"), QStringLiteral("i")},   {QStringLiteral("Y"), QStringLiteral("e")},
        {QStringLiteral("W"), QStringLiteral("e")},   {QStringLiteral("E"), QStringLiteral("e")},
        {QStringLiteral("OY"), QStringLiteral("aI")}, {QStringLiteral("I"), QStringLiteral("i")},
        {QStringLiteral("U"), QStringLiteral("u")},   {QStringLiteral("O"), QStringLiteral("o")},
    };
    return unrounded.value(vowel, vowel);
}

QString relaxedConsonant(const QString &consonant)
{
    static const QHash<QString, QString> voiceless = {
        {QStringLiteral("b"), QStringLiteral("p")}, {QStringLiteral("d"), QStringLiteral("t")},
        {QStringLiteral("g"), QStringLiteral("k")}, {QStringLiteral("v"), QStringLiteral("f")},
        {QStringLiteral("z"), QStringLiteral("s")}, {QStringLiteral("Z"), QStringLiteral("S")},
        {QStringLiteral("R"), QStringLiteral("r")},
    };
    return voiceless.value(consonant, consonant);
}

int editDistance(const QStringList &a, const QStringList &b)
{
    QList<int> row(b.size() + 1);
    for (qsizetype j = 0; j <= b.size(); ++j)
        row[j] = int(j);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = int(i);
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const int above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

} // namespace

QStringList ImpureRhyme::relaxed(const QStringList &tail)
{
    QStringList result;
    for (qsizetype i = 0; i < tail.size(); ++i) {
        const QString &phoneme = tail.at(i);
        if (i == 0) {
            result.append(relaxedVowel(phoneme));
        } else if (phoneme == QLatin1String("3")) {
            // The vocalised "-er" against "-el", "-en": a schwa and a consonant.
            result << QStringLiteral("@") << QStringLiteral("r");
        } else if (i + 1 < tail.size()) {
            result << relaxedConsonant(phoneme);
        } else {
            // At the end voicing tells words apart ("date", "fade").
            result << phoneme;
        }
    }
    return result;
}

bool ImpureRhyme::matches(const QStringList &tail, const QStringList &other)
{
    if (tail.isEmpty() || other.isEmpty() || tail == other)
        return false;
    const QStringList a = relaxed(tail);
    const QStringList b = relaxed(other);
    if (a.first() != b.first())
        return false;
    if (a == b)
        return true;
    const QStringList endA = a.mid(1);
    const QStringList endB = b.mid(1);
    return std::max(endA.size(), endB.size()) >= 3 && editDistance(endA, endB) <= 1;
}
