#include "export/CRC32.h"

#include <cstring>

namespace {

constexpr std::uint32_t polynomial = 0xEDB88320u;
constexpr int slices = 8;

using SliceTables = std::array<CRC32::Table, slices>;

SliceTables makeSliceTables()
{
    SliceTables tables{};
    for (std::uint32_t n = 0; n < 256; ++n) {
        std::uint32_t value = n;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1u) ? (value >> 1) ^ polynomial : value >> 1;
        tables[0][n] = value;
    }
    // Table k advances a byte through k further zero bytes, so eight bytes are folded in
    // with eight independent look-ups instead of a chain of dependent ones.
    for (std::uint32_t n = 0; n < 256; ++n) {
        for (int k = 1; k < slices; ++k)
            tables[k][n] = (tables[k - 1][n] >> 8) ^ tables[0][tables[k - 1][n] & 0xFFu];
    }
    return tables;
}

const SliceTables &sliceTables()
{
    static const SliceTables tables = makeSliceTables();
    return tables;
}

std::uint32_t loadLittleEndian32(const unsigned char *bytes)
{
    return std::uint32_t(bytes[0]) | std::uint32_t(bytes[1]) << 8 | std::uint32_t(bytes[2]) << 16 |
           std::uint32_t(bytes[3]) << 24;
}

} // namespace

const CRC32::Table &CRC32::table()
{
    return sliceTables()[0];
}

std::uint32_t CRC32::checksum(QByteArrayView data)
{
    return update(0, data);
}

std::uint32_t CRC32::update(std::uint32_t crc, QByteArrayView data)
{
    const SliceTables &t = sliceTables();
    const auto *bytes = reinterpret_cast<const unsigned char *>(data.data());
    qsizetype length = data.size();
    std::uint32_t reg = ~crc;
    while (length >= slices) {
        const std::uint32_t low = loadLittleEndian32(bytes) ^ reg;
        const std::uint32_t high = loadLittleEndian32(bytes + 4);
        reg = t[7][low & 0xFF] ^ t[6][(low >> 8) & 0xFF] ^ t[5][(low >> 16) & 0xFF] ^ t[4][low >> 24] ^
              t[3][high & 0xFF] ^ t[2][(high >> 8) & 0xFF] ^ t[1][(high >> 16) & 0xFF] ^ t[0][high >> 24];
        bytes += slices;
        length -= slices;
    }
    while (length-- > 0)
        reg = t[0][(reg ^ *bytes++) & 0xFF] ^ (reg >> 8);
    return ~reg;
}
