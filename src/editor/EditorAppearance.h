#pragma once

#include <QColor>
#include <QSizeF>
#include <QString>

#include <array>
#include <optional>

// How the poem body is shown while writing. The appearance's text colour is the colour of
// text that carries no colour of its own; it is never written into the stored text.
enum class EditorAppearance { standard, paper };

inline constexpr std::array<EditorAppearance, 2> allEditorAppearances = {EditorAppearance::standard,
                                                                         EditorAppearance::paper};

QString rawValue(EditorAppearance appearance);
std::optional<EditorAppearance> editorAppearanceFromRaw(const QString &raw);
QString title(EditorAppearance appearance);
// Horizontal × vertical, in points.
QSizeF textInset(EditorAppearance appearance);
QColor textColor(EditorAppearance appearance);
QColor insertionPointColor(EditorAppearance appearance);
QColor surfaceColor(EditorAppearance appearance);
