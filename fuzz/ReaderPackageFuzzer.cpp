// Feeds arbitrary bytes to the decoder of reader packages. It may not crash, hang or touch
// memory it does not own; what it accepts must survive being encoded and decoded again.
#include "export/OdeLeafReaderPackageCodec.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto package = OdeLeafReaderPackageCodec::decode(bytes);
    if (!package.ok()) {
        if (package.error().message.isEmpty())
            std::abort();
        return 0;
    }
    const QByteArray encoded = OdeLeafReaderPackageCodec::encode(*package);
    const auto again = OdeLeafReaderPackageCodec::decode(encoded);
    if (!again.ok() || OdeLeafReaderPackageCodec::encode(*again) != encoded)
        std::abort();
    return 0;
}
