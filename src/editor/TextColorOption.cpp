#include "editor/TextColorOption.h"

#include "editor/AppTheme.h"

#include <QCoreApplication>

QString title(TextColorOption option)
{
    switch (option) {
    case TextColorOption::standard:
        return QCoreApplication::translate("TextColorOption", "Standard");
    case TextColorOption::accent:
        return QCoreApplication::translate("TextColorOption", "Gold");
    case TextColorOption::secondary:
        return QCoreApplication::translate("TextColorOption", "Grau");
    case TextColorOption::red:
        return QCoreApplication::translate("TextColorOption", "Rot");
    case TextColorOption::blue:
        return QCoreApplication::translate("TextColorOption", "Blau");
    case TextColorOption::green:
        return QCoreApplication::translate("TextColorOption", "Grün");
    }
    return {};
}

QString identifier(TextColorOption option)
{
    return title(option);
}

std::optional<QColor> color(TextColorOption option)
{
    switch (option) {
    case TextColorOption::standard:
        return std::nullopt;
    case TextColorOption::accent:
        return AppTheme::accent();
    case TextColorOption::secondary:
        return AppTheme::secondaryLabel();
    case TextColorOption::red:
        return AppTheme::systemRed();
    case TextColorOption::blue:
        return AppTheme::systemBlue();
    case TextColorOption::green:
        return AppTheme::systemGreen();
    }
    return std::nullopt;
}
