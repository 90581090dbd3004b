#pragma once

#include <QColor>
#include <QString>

#include <array>
#include <optional>

// The colours of the formatting menu. "Standard" is the label colour, which in a stored
// text is "no colour of its own": the reader's default ink (black on paper, the
// appearance's text colour in the editor).
enum class TextColorOption { standard, accent, secondary, red, blue, green };

inline constexpr std::array<TextColorOption, 6> allTextColorOptions = {
    TextColorOption::standard, TextColorOption::accent, TextColorOption::secondary,
    TextColorOption::red,      TextColorOption::blue,   TextColorOption::green};

QString title(TextColorOption option);
// The identifier is the title.
QString identifier(TextColorOption option);
// nullopt for the label colour.
std::optional<QColor> color(TextColorOption option);
