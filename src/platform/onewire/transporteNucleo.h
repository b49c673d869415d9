#pragma once

#include "platform/onewire/transporte.h"

#include <QString>

#include <memory>
#include <vector>

namespace onewire {

// An adapter that the kernel drives, through the files of its folder. A write to a device's file is a reset, its
// selection and the bytes; a read goes on behind it. So one block has to carry a whole transaction.
class TransporteNucleo : public Transporte {
public:
    static std::unique_ptr<TransporteNucleo> abrir(const QString &pasta); // null when it is no bus master
    ~TransporteNucleo() override;

    bool reset() override;
    QByteArray bloco(const QByteArray &enviar) override;
    std::optional<Rom> procurar(quint8 familia, bool primeira) override;
    bool valido() override;

private:
    explicit TransporteNucleo(const QString &pasta) : m_pasta(pasta) {}
    QByteArray ler(const QString &nome) const;
    void escrever(const QString &nome, const QByteArray &bytes) const;
    std::vector<Rom> dispositivos() const;
    void fechar();

    QString m_pasta;
    std::vector<Rom> m_achados;
    size_t m_proximo = 0;
    int m_fd = -1; // of the running transaction
};

// "21-0123456789ab" and back; the number without its CRC.
std::optional<Rom> romDoNome(const QString &nome);
QString nomeDoRom(const Rom &rom);

} // namespace onewire
