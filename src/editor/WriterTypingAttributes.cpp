#include "editor/WriterTypingAttributes.h"

#include "archive/AppPreferences.h"

#include <QFontDatabase>

QString WriterTypingAttributes::editorFontFamily()
{
    const QString preferred = AppPreferences::editorFontName();
    if (QFontDatabase::hasFamily(preferred))
        return preferred;
    return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

QFont WriterTypingAttributes::editorFont(double pointSize)
{
    QFont font(editorFontFamily());
    font.setPointSizeF(pointSize);
    return font;
}

QTextCharFormat WriterTypingAttributes::defaults()
{
    QTextCharFormat format;
    format.setFontFamilies({editorFontFamily()});
    format.setFontPointSize(defaultPointSize);
    return format;
}

QTextCharFormat WriterTypingAttributes::pieceFormat(double pointSize, bool bold, bool italic, const QColor &color)
{
    QTextCharFormat format;
    format.setFontFamilies({editorFontFamily()});
    format.setFontPointSize(pointSize);
    if (bold)
        format.setFontWeight(QFont::Bold);
    if (italic)
        format.setFontItalic(true);
    format.setForeground(color);
    return format;
}

QTextCharFormat WriterTypingAttributes::preservingFormatting(const QTextCharFormat &current,
                                                             const QTextCharFormat &defaults)
{
    QTextCharFormat result = current;
    const QMap<int, QVariant> properties = defaults.properties();
    for (auto it = properties.constBegin(); it != properties.constEnd(); ++it) {
        if (!result.hasProperty(it.key()))
            result.setProperty(it.key(), it.value());
    }
    return result;
}
