#include "platform/onewire/crc.h"

namespace onewire {

quint8 crc8(std::span<const quint8> bytes) {
    quint8 crc = 0;
    for (quint8 byte : bytes) {
        crc ^= byte;
        for (int i = 0; i < 8; ++i)
            crc = quint8(crc & 1 ? (crc >> 1) ^ 0x8C : crc >> 1);
    }
    return crc;
}

quint16 crc16(std::span<const quint8> bytes, quint16 semente) {
    quint16 crc = semente;
    for (quint8 byte : bytes) {
        crc ^= byte;
        for (int i = 0; i < 8; ++i)
            crc = quint16(crc & 1 ? (crc >> 1) ^ 0xA001 : crc >> 1);
    }
    return crc;
}

} // namespace onewire
