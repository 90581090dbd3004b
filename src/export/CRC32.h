#pragma once

#include <QByteArrayView>

#include <array>
#include <cstdint>

// The CRC-32 of ZIP (reflected, polynomial 0xEDB88320).
class CRC32 {
public:
    using Table = std::array<std::uint32_t, 256>;

    // The byte-wise table; built once per process.
    static const Table &table();
    static std::uint32_t checksum(QByteArrayView data);
    // Continues a checksum over more data: checksum(a + b) == update(checksum(a), b).
    static std::uint32_t update(std::uint32_t crc, QByteArrayView data);
};
