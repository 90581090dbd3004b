#pragma once

#include <QString>
#include <QStringList>

#include <random>

// Realistic German titles and texts, the same for every run.
class ArchiveFixtures {
public:
    explicit ArchiveFixtures(unsigned seed = 42) : m_random(seed) {}

    QString title()
    {
        static const QStringList words = {
            QStringLiteral("Herbst"),    QStringLiteral("Mond"),     QStringLiteral("über"),   QStringLiteral("der"),
            QStringLiteral("Nacht"),     QStringLiteral("Lied"),     QStringLiteral("Straße"), QStringLiteral("Fluss"),
            QStringLiteral("Mädchen"),   QStringLiteral("Abschied"), QStringLiteral("Rosen"),  QStringLiteral("Winter"),
            QStringLiteral("Sehnsucht"), QStringLiteral("im"),       QStringLiteral("Garten"), QStringLiteral("Stille"),
            QStringLiteral("Öde"),       QStringLiteral("Meer"),     QStringLiteral("und"),    QStringLiteral("Licht")};
        const int count = 1 + int(m_random() % 4);
        QStringList parts;
        for (int i = 0; i < count; ++i)
            parts.append(words.at(qsizetype(m_random() % words.size())));
        if (m_random() % 5 == 0)
            parts.append(QString::number(m_random() % 30));
        return parts.join(m_random() % 7 == 0 ? QStringLiteral(" – ") : QStringLiteral(" "));
    }

    QString text(int length)
    {
        QString result;
        while (result.size() < length) {
            result.append(title());
            result.append(result.size() % 3 == 0 ? QStringLiteral("\n") : QStringLiteral(" "));
        }
        return result.left(length);
    }

    unsigned next() { return m_random(); }

private:
    std::mt19937 m_random;
};
