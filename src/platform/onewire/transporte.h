#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <array>
#include <optional>

// The bus as three operations. Back ends: the serial line driver, the kernel's w1 files, the virtual button.
namespace onewire {

using Rom = std::array<quint8, 8>; // element 0 is the family, element 7 the CRC8 of the others

class Transporte {
public:
    virtual ~Transporte() = default;
    // A reset pulse; true when a device answered with its presence. Throws Falha when the adapter has gone.
    virtual bool reset() = 0;
    // Sends the bytes, one read slot is 0xFF; gives back as many bytes as were seen on the line.
    virtual QByteArray bloco(const QByteArray &enviar) = 0;
    // The next device in the order of the search algorithm: family 0 is every family. Empty when there is none left.
    virtual std::optional<Rom> procurar(quint8 familia, bool primeira) = 0;
    // Does the adapter still answer? Sends nothing that could reach a device.
    virtual bool valido() = 0;
};

} // namespace onewire
