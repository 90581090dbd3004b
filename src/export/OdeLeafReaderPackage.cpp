#include "export/OdeLeafReaderPackage.h"

#include <array>

namespace {

constexpr std::array<std::pair<TextAlignment, const char *>, 5> rawValues = {{
    {TextAlignment::natural, "natural"},
    {TextAlignment::left, "left"},
    {TextAlignment::center, "center"},
    {TextAlignment::right, "right"},
    {TextAlignment::justified, "justified"},
}};

} // namespace

QString rawValue(TextAlignment alignment)
{
    for (const auto &[value, raw] : rawValues) {
        if (value == alignment)
            return QString::fromLatin1(raw);
    }
    return {};
}

std::optional<TextAlignment> textAlignmentFromRaw(const QString &raw)
{
    for (const auto &[value, name] : rawValues) {
        if (raw == QLatin1String(name))
            return value;
    }
    return std::nullopt;
}
