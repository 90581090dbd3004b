#include "verse/MetricalFoot.h"

QString footName(MetricalFoot foot)
{
    switch (foot) {
    case MetricalFoot::jambus:
        return QStringLiteral("Jambus");
    case MetricalFoot::trochaeus:
        return QStringLiteral("Trochäus");
    case MetricalFoot::daktylus:
        return QStringLiteral("Daktylus");
    case MetricalFoot::anapaest:
        return QStringLiteral("Anapäst");
    case MetricalFoot::amphibrachys:
        return QStringLiteral("Amphibrachys");
    }
    return {};
}

std::optional<MetricalFoot> footFromName(const QString &name)
{
    for (const MetricalFoot foot : allMetricalFeet) {
        if (footName(foot) == name)
            return foot;
    }
    return std::nullopt;
}

QString footPattern(MetricalFoot foot)
{
    switch (foot) {
    case MetricalFoot::jambus:
        return QStringLiteral("xX");
    case MetricalFoot::trochaeus:
        return QStringLiteral("Xx");
    case MetricalFoot::daktylus:
        return QStringLiteral("Xxx");
    case MetricalFoot::anapaest:
        return QStringLiteral("xxX");
    case MetricalFoot::amphibrachys:
        return QStringLiteral("xXx");
    }
    return {};
}

QString footTemplate(MetricalFoot foot, int syllables)
{
    const QString pattern = footPattern(foot);
    QString line;
    line.reserve(syllables);
    for (int i = 0; i < syllables; ++i)
        line.append(pattern.at(i % pattern.size()));
    return line;
}
