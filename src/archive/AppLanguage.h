#pragma once

#include <QString>

// Raw values are the case names, as stored under "appLanguage".
enum class AppLanguage { system, german, english };

QString rawValue(AppLanguage language);
AppLanguage appLanguageFromRaw(const QString &raw);
