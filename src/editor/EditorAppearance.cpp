#include "editor/EditorAppearance.h"

#include "editor/AppTheme.h"

#include <QCoreApplication>

QString rawValue(EditorAppearance appearance)
{
    return appearance == EditorAppearance::paper ? QStringLiteral("paper") : QStringLiteral("standard");
}

std::optional<EditorAppearance> editorAppearanceFromRaw(const QString &raw)
{
    for (const EditorAppearance appearance : allEditorAppearances) {
        if (rawValue(appearance) == raw)
            return appearance;
    }
    return std::nullopt;
}

QString title(EditorAppearance appearance)
{
    return appearance == EditorAppearance::paper ? QCoreApplication::translate("EditorAppearance", "Papier")
                                                 : QCoreApplication::translate("EditorAppearance", "Standard");
}

QSizeF textInset(EditorAppearance appearance)
{
    return appearance == EditorAppearance::paper ? QSizeF(76, 62) : QSizeF(18, 18);
}

QColor textColor(EditorAppearance appearance)
{
    return appearance == EditorAppearance::paper ? AppTheme::paperText() : QColor(221, 211, 196);
}

QColor insertionPointColor(EditorAppearance)
{
    return AppTheme::accent();
}

QColor surfaceColor(EditorAppearance appearance)
{
    return appearance == EditorAppearance::paper ? AppTheme::paperSurface() : AppTheme::standardSurface();
}
