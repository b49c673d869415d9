#pragma once

#include "simulator/unidades/registo.h"

#include <QObject>

#include <memory>

namespace simulador {

class ServidorConsola;
class ServidorPesquisa;
class ServidorWeb;

// A virtual unit on a loopback address: web page and setup.xml, log transfer, answers to searches, console.
// Needs a running event loop and nothing else.
class Unidade : public QObject {
public:
    explicit Unidade(const Definicao &definicao, QObject *pai = nullptr);
    ~Unidade() override;

    bool iniciar(); // false: erro() says why
    QString erro() const { return m_erro; }

    const Definicao &definicao() const { return m_definicao; }
    QString endereco() const { return m_definicao.endereco; }
    quint16 portaWeb() const;
    quint16 portaConsola() const;
    quint16 portaPesquisa() const;
    Registo &registo() { return m_registo; }
    void definirDefeitos(const Defeitos &defeitos) { m_definicao.defeitos = defeitos; } // from now on
    int pedidosWeb() const;
    int perguntas() const; // searches that reached it

private:
    Definicao m_definicao;
    Registo m_registo;
    std::unique_ptr<ServidorWeb> m_web;
    std::unique_ptr<ServidorConsola> m_consola;
    std::unique_ptr<ServidorPesquisa> m_pesquisa;
    QString m_erro;
};

} // namespace simulador
