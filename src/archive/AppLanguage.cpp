#include "archive/AppLanguage.h"

QString rawValue(AppLanguage language)
{
    switch (language) {
    case AppLanguage::german:
        return QStringLiteral("german");
    case AppLanguage::english:
        return QStringLiteral("english");
    case AppLanguage::system:
        break;
    }
    return QStringLiteral("system");
}

AppLanguage appLanguageFromRaw(const QString &raw)
{
    if (raw == QLatin1String("german"))
        return AppLanguage::german;
    if (raw == QLatin1String("english"))
        return AppLanguage::english;
    return AppLanguage::system;
}
