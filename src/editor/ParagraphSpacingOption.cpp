#include "editor/ParagraphSpacingOption.h"

#include <QCoreApplication>

QString title(ParagraphSpacingOption option)
{
    switch (option) {
    case ParagraphSpacingOption::compact:
        return QCoreApplication::translate("ParagraphSpacingOption", "Eng");
    case ParagraphSpacingOption::normal:
        return QCoreApplication::translate("ParagraphSpacingOption", "Normal");
    case ParagraphSpacingOption::airy:
        return QCoreApplication::translate("ParagraphSpacingOption", "Luftig");
    }
    return {};
}

QString identifier(ParagraphSpacingOption option)
{
    return title(option);
}

double lineSpacing(ParagraphSpacingOption option)
{
    switch (option) {
    case ParagraphSpacingOption::compact:
        return 1;
    case ParagraphSpacingOption::normal:
        return 5;
    case ParagraphSpacingOption::airy:
        return 9;
    }
    return 0;
}

// Only "Luftig" adds space after a paragraph; the other two differ in leading alone.
double paragraphSpacingAfter(ParagraphSpacingOption option)
{
    return option == ParagraphSpacingOption::airy ? 4 : 0;
}
