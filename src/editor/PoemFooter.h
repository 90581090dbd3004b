#pragma once

#include <QDate>
#include <QString>

// "Standardabschluss einfügen": copyright line and place with date.
class PoemFooter {
public:
    static QString standardPoemFooter(const QString &author, const QString &place, const QDate &date);
    // With author and place from the preferences and today's date.
    static QString standardPoemFooter();
};
