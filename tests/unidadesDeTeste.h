#pragma once

#include "core/literais.h"
#include "core/modINI.h"
#include "simulator/unidades/unidade.h"

#include <QTcpServer>
#include <QTest>

#include <memory>

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
