#pragma once

#include <QString>

#include <array>

// Line spacing is leading added between the lines of a paragraph; both values in points.
enum class ParagraphSpacingOption { compact, normal, airy };

inline constexpr std::array<ParagraphSpacingOption, 3> allParagraphSpacingOptions = {
    ParagraphSpacingOption::compact, ParagraphSpacingOption::normal, ParagraphSpacingOption::airy};

QString title(ParagraphSpacingOption option);
QString identifier(ParagraphSpacingOption option);
double lineSpacing(ParagraphSpacingOption option);
double paragraphSpacingAfter(ParagraphSpacingOption option);
