#include "editor/PoemFooter.h"

#include "archive/AppPreferences.h"

#include <QLocale>
#include <QStringList>

QString PoemFooter::standardPoemFooter(const QString &author, const QString &place, const QDate &date)
{
    const QString trimmedAuthor = author.trimmed();
    const QString trimmedPlace = place.trimmed();
    const QString dateText = QLocale().toString(date, QStringLiteral("dd.MM.yyyy"));
    QStringList lines;
    if (!trimmedAuthor.isEmpty())
        lines.append(QStringLiteral("© ") + trimmedAuthor);
    lines.append(trimmedPlace.isEmpty() ? dateText : trimmedPlace + QStringLiteral(", ") + dateText);
    return lines.join(QLatin1Char('\n'));
}

QString PoemFooter::standardPoemFooter()
{
    return standardPoemFooter(AppPreferences::poemFooterAuthor(), AppPreferences::poemFooterPlace(),
                              QDate::currentDate());
}
