#include "archive/PoemVersion.h"

#include <QRegularExpression>

QString PoemVersion::reasonText(const QString &key)
{
    static const QRegularExpression restoredNumber(QStringLiteral("^vor Wiederherstellung von Fassung (\\d+)$"));
    if (const QRegularExpressionMatch match = restoredNumber.match(key); match.hasMatch())
        return tr("vor Wiederherstellung von Fassung %1").arg(match.captured(1));
    return tr(key.toUtf8().constData());
}
