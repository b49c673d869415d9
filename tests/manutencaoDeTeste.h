#pragma once

#include "manutencao/registar.h"
#include "platform/forms/registoForms.h"
#include "shell/frmMain.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

// A dialog as the menu opens it: the body works in it while it is open, and closes it at the end.
inline void comDialogo(const QString &nome, const std::function<void(QDialog *)> &corpo) {
    bool feito = false;
    QTimer espera; // the form may let events run while it loads
    QObject::connect(&espera, &QTimer::timeout, qApp, [&] {
        const QPointer<QDialog> dialogo = qobject_cast<QDialog *>(registoForms().form(nome));
        if (!dialogo || !dialogo->isVisible())
            return;
        espera.stop();
        corpo(dialogo);
        feito = true;
        if (dialogo)
            dialogo->close();
    });
    espera.start(1);
    registoForms().abrir(nome);
    QVERIFY(feito);
}

struct Programa {
    explicit Programa(Instalacao::Base base = Instalacao::Base::Vazia) : instalacao(base) {
        registarManutencao(registoForms());
        principal = std::make_unique<frmMain>();
        utilizador::mostrar(principal.get());
    }
    QString guardado(const QString &seccao, const QString &chave) const {
        return modINI::GetSetting(estado().NomePrograma, seccao, chave);
    }
    Instalacao instalacao;
    std::unique_ptr<frmMain> principal;
};

inline void comSensores(const Instalacao &inst, int leituras = 3) {
    inst.sensores({{u"A1"_s, u"Câmara 1"_s}, {u"B2"_s, u"Câmara 2"_s}, {u"C3"_s, u"Câmara 3"_s}});
    for (const QString &s : {u"A1"_s, u"B2"_s, u"C3"_s})
        inst.leituras(u"Temperaturas"_s, s, u"2024-03-15 00:00:00"_s, 300, QList<double>(leituras, 4.5));
    inst.leituras(u"Pressao"_s, u"A1"_s, u"2024-03-15 00:00:00"_s, 300, {101.0});
}
