#include "simulator/botao/dispositivo.h"

namespace simulador {

namespace {

enum ComandoRom : quint8 { Ler = 0x33, Escolher = 0x55, Procurar = 0xF0, ProcurarAlarme = 0xEC, Saltar = 0xCC };

} // namespace

void Dispositivo::reset() {
    m_fase = Fase::Comando;
    m_bit = 0;
    m_entrada = 0;
}

bool Dispositivo::largar() {
    switch (m_fase) {
    case Fase::LerRom:
        return bitDoRom(m_bit);
    case Fase::Procurar:
        return m_passo == 0 ? bitDoRom(m_bit) : m_passo == 1 ? !bitDoRom(m_bit) : true;
    case Fase::Funcao:
        if (m_bit == 0)
            m_saida = m_funcoes->aEnviar();
        return m_saida >> m_bit & 1;
    default:
        return true;
    }
}

void Dispositivo::slot(bool linha) {
    switch (m_fase) {
    case Fase::Comando:
    case Fase::Funcao:
        m_entrada = quint8(m_entrada | (linha ? 1 << m_bit : 0));
        if (++m_bit == 8) {
            const quint8 byte = m_entrada;
            m_bit = 0;
            m_entrada = 0;
            if (m_fase == Fase::Comando)
                comandoRom(byte);
            else
                m_funcoes->naLinha(byte);
        }
        break;
    case Fase::LerRom:
        if (++m_bit == 64)
            m_fase = Fase::Surdo;
        break;
    case Fase::Escolher:
    case Fase::Procurar:
        if (m_fase == Fase::Procurar && m_passo < 2) {
            ++m_passo;
            break;
        }
        m_passo = 0;
        if (linha != bitDoRom(m_bit)) {
            m_fase = Fase::Surdo;
        } else if (++m_bit == 64) {
            m_bit = 0;
            m_fase = m_funcoes ? Fase::Funcao : Fase::Surdo;
            if (m_funcoes)
                m_funcoes->comecar();
        }
        break;
    case Fase::Surdo:
        break;
    }
}

void Dispositivo::comandoRom(quint8 comando) {
    m_passo = 0;
    m_fase = Fase::Surdo;
    if (comando == Ler)
        m_fase = Fase::LerRom;
    else if (comando == Escolher)
        m_fase = Fase::Escolher;
    else if (comando == Procurar || (comando == ProcurarAlarme && m_funcoes && m_funcoes->emAlarme()))
        m_fase = Fase::Procurar;
    else if (comando == Saltar && m_funcoes) {
        m_fase = Fase::Funcao;
        m_funcoes->comecar();
    }
}

} // namespace simulador
