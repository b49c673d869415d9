#pragma once

#include <QtGlobal>

#include <span>

namespace onewire {

quint8 crc8(std::span<const quint8> bytes);                        // of ROM numbers; 0 over all eight bytes
quint16 crc16(std::span<const quint8> bytes, quint16 semente = 0); // not inverted
// What is left after a message and its inverted CRC.
constexpr quint16 restoCrc16 = 0xB001;

} // namespace onewire
