#pragma once

#include "simulator/botao/dispositivo.h"
#include "simulator/botao/gaveta.h"

namespace simulador {

// The wire with what lies on the reader. Time goes by for the buttons at a reset, so a transaction sees one instant.
class Linha {
public:
    explicit Linha(const Gaveta &gaveta, RelogioExterno relogio = milissegundosAgora);
    ~Linha();
    Linha(const Linha &) = delete;
    Linha &operator=(const Linha &) = delete;

    bool reset(); // presence
    bool emAlarme() const;
    bool slot(bool mestre);
    quint8 byte(quint8 mestre);

    DefeitosBotao defeitos;
    // For tests: another temperature than the files tell, by the button's clock.
    ChipDS1921::Temperatura temperatura;
    RelogioExterno relogio;
    // The buttons on the reader, brought to the present; the pointers last until the next reset.
    std::vector<Botao *> botoes();

private:
    struct Posto {
        std::unique_ptr<Botao> botao;
        std::unique_ptr<FuncoesDS1921> funcoes;
        std::unique_ptr<Dispositivo> dispositivo;
    };
    void verLeitor();
    void guardar();

    Gaveta m_gaveta;
    QStringList m_nomes;
    std::vector<Posto> m_postos;
    int m_bits = 0; // of the running byte, for the fault that counts bytes
};

} // namespace simulador
