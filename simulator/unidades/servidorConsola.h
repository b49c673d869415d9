#pragma once

#include "simulator/unidades/registo.h"

#include <QTcpServer>

namespace simulador {

// The text console. Whatever arrives gets exactly one answer, as the setting of the clock needs it.
class ServidorConsola : public QTcpServer {
public:
    ServidorConsola(const Definicao &definicao, Registo &registo, QObject *pai);

private:
    const Definicao &m_definicao;
    Registo &m_registo;
};

} // namespace simulador
