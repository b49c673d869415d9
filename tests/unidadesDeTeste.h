#pragma once

#include "core/literais.h"
#include "core/modINI.h"
#include "simulator/unidades/unidade.h"

#include <QTcpServer>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <memory>

// Sanitizers slow the program down and keep freed memory: what is measured under them says little.
#ifdef __SANITIZE_ADDRESS__
constexpr bool medidasContam = false;
#else
constexpr bool medidasContam = true;
#endif
constexpr double paragemMaxima = medidasContam ? 50 : 500; // milliseconds

// Virtual units on free ports for a test.
inline simulador::Definicao definicao(simulador::Defeitos defeitos = {}, int registos = 200,
                                      const QString &endereco = u"127.0.0.2"_s) {
    simulador::Definicao d;
    d.endereco = endereco;
    d.registos = registos;
    d.defeitos = defeitos;
    d.atrasoMs = 150;
    return d;
}

inline std::unique_ptr<simulador::Unidade> ligarUnidade(const simulador::Definicao &d = definicao()) {
    auto unidade = std::make_unique<simulador::Unidade>(d);
    if (!unidade->iniciar())
        qFatal("%s", qPrintable(unidade->erro()));
    return unidade;
}

inline std::unique_ptr<simulador::Unidade> ligarUnidade(const simulador::Defeitos &defeitos) {
    return ligarUnidade(definicao(defeitos));
}

inline QStringList memoria(const simulador::Registo &r) {
    QStringList linhas;
    for (qint64 i = 0; i < r.quantos(); ++i)
        linhas.append(QString::fromLatin1(r.linha(r.primeiro() + i)));
    return linhas;
}

// A setting of the program for the units.
inline void definir(const QString &chave, const QString &valor) {
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, chave, valor);
}

// A port at which nobody listens.
inline quint16 portaLivre() {
    QTcpServer servidor;
    servidor.listen(QHostAddress(u"127.0.0.7"_s));
    return servidor.serverPort();
}

// The longest work between two turns of the event loop, in milliseconds of this thread's own time, so that a busy
// machine does not count.
class MedidorDeParagens {
public:
    MedidorDeParagens() {
        m_ultima = agora();
        QObject::connect(&m_pulso, &QTimer::timeout, &m_pulso, [this] {
            m_maior = maior();
            m_ultima = agora();
        });
        m_pulso.start(1);
    }
    double maior() const { return std::max(m_maior, agora() - m_ultima); }

private:
    static double agora() {
        timespec t{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
        return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
    }
    QTimer m_pulso;
    double m_ultima = 0;
    double m_maior = 0;
};
