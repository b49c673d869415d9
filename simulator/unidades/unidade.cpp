#include "simulator/unidades/unidade.h"

#include "core/literais.h"
#include "simulator/unidades/servidorConsola.h"
#include "simulator/unidades/servidorPesquisa.h"
#include "simulator/unidades/servidorWeb.h"

namespace simulador {

Unidade::Unidade(const Definicao &definicao, QObject *pai)
    : QObject(pai), m_definicao(completa(definicao)), m_registo(m_definicao),
      m_web(std::make_unique<ServidorWeb>(m_definicao, m_registo, nullptr)),
      m_consola(std::make_unique<ServidorConsola>(m_definicao, m_registo, nullptr)),
      m_pesquisa(std::make_unique<ServidorPesquisa>(m_definicao, nullptr)) {}

Unidade::~Unidade() = default;

bool Unidade::iniciar() {
    const QHostAddress endereco(m_definicao.endereco);
    if (endereco.protocol() != QAbstractSocket::IPv4Protocol || !endereco.isLoopback()) {
        m_erro = u"%1 não é um endereço 127.x.x.x"_s.arg(m_definicao.endereco);
        return false;
    }
    const auto falhou = [this](const QString &que, quint16 porta, const QString &porque) {
        m_erro = u"%1:%2 (%3): %4"_s.arg(m_definicao.endereco).arg(porta).arg(que, porque);
        return false;
    };
    if (!m_web->listen(endereco, m_definicao.portaWeb))
        return falhou(u"web"_s, m_definicao.portaWeb, m_web->errorString());
    if (!m_consola->listen(endereco, m_definicao.portaConsola))
        return falhou(u"consola"_s, m_definicao.portaConsola, m_consola->errorString());
    if (!m_pesquisa->ligar(endereco, m_definicao.portaPesquisa))
        return falhou(u"pesquisa"_s, m_definicao.portaPesquisa, m_pesquisa->erro());
    m_web->definirPortaConsola(portaConsola());
    m_pesquisa->definirPortaWeb(portaWeb());
    return true;
}

quint16 Unidade::portaWeb() const {
    return m_web->serverPort();
}
quint16 Unidade::portaConsola() const {
    return m_consola->serverPort();
}
quint16 Unidade::portaPesquisa() const {
    return m_pesquisa->porta();
}
int Unidade::pedidosWeb() const {
    return m_web->pedidos();
}
int Unidade::perguntas() const {
    return m_pesquisa->perguntas();
}

} // namespace simulador
