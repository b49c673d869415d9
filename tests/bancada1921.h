#pragma once

#include "core/estado.h"
#include "logger/forms/registar.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>

// An installation, a reader with one button, and the form over both, worked as a user works it.
struct Bancada {
    explicit Bancada(simulador::Variante variante = simulador::Variante::G) {
        leitor.fazer(u"A"_s, variante);
        acertar();
        registarLogger(registoForms());
        abrir();
    }
    ~Bancada() { delete form; }
    Bancada(const Bancada &) = delete;
    Bancada &operator=(const Bancada &) = delete;

    void abrir() {
        form = registoForms().abrir(u"frmDS1921"_s);
        utilizador::mostrar(form);
        form->activateWindow();
        if (!QTest::qWaitForWindowActive(form))
            utilizador::desistir(u"frmDS1921 is not active"_s);
    }
    // The PC's clock goes with the reader's.
    void acertar() { instalacao.relogio(leitor.agora().toString(u"yyyy-MM-dd HH:mm:ss"_s)); }
    void andar(int minutos) {
        leitor.andar(minutos);
        acertar();
    }

    void clicar(const char *nome) const { utilizador::clicar(form, QString::fromLatin1(nome)); }
    QString caixa(const char *nome) const {
        return utilizador::controlo<QLineEdit>(form, QString::fromLatin1(nome))->text();
    }
    QString etiqueta(const char *nome) const {
        return utilizador::controlo<QLabel>(form, QString::fromLatin1(nome))->text();
    }
    QString lista(const char *nome) const {
        return utilizador::controlo<QComboBox>(form, QString::fromLatin1(nome))->currentText();
    }
    QWidget *controlo(const char *nome) const { return utilizador::controlo<QWidget>(form, QString::fromLatin1(nome)); }
    bool permitido(const char *nome) const { return controlo(nome)->isEnabled(); }
    bool visivel(const char *nome) const { return controlo(nome)->isVisible(); }
    Grelha *amostras() const { return utilizador::controlo<Grelha>(form, u"grdTemps"_s); }
    Grelha *alarmes() const { return utilizador::controlo<Grelha>(form, u"grdAlarmes"_s); }

    struct Programa {
        QString registador = u"Registador Vacinas"_s;
        QString missao = u"Transporte Évora"_s;
        QString intervalo = u"10"_s;
        QString calibracao = {}; // as it is
        QString minimo = u"2,0"_s;
        QString maximo = u"8,0"_s;
        bool continuo = false;
    };
    // The whole assistant, from the read to its last button.
    void programar(const Programa &p) const {
        clicar("lblEstado");
        clicar("cmdLer");
        clicar("cmdAvancar");
        utilizador::escrever(form, u"txtDescricaoRegistador"_s, p.registador);
        utilizador::escrever(form, u"txtDescricaoMissao"_s, p.missao);
        clicar("cmdAvancar");
        clicar("cmdAvancar");
        utilizador::escolher(form, u"cboIntervaloLeitura"_s, p.intervalo);
        if (!p.calibracao.isEmpty())
            utilizador::escolher(form, u"cboCalibracao"_s, p.calibracao);
        clicar("cmdAvancar");
        utilizador::escolher(form, u"cboLimMin"_s, p.minimo);
        utilizador::escolher(form, u"cboLimMax"_s, p.maximo);
        clicar("cmdAvancar");
        if (p.continuo)
            clicar("chkCicloContinuo");
        clicar("cmdConcluir");
    }
    void programar() const { programar(Programa{}); }
    // A mission with eleven samples that were downloaded.
    void comMissao() {
        programar();
        andar(101);
        clicar("cmdLerDados");
        if (linhasGuardadas() != 11)
            utilizador::desistir(u"no mission"_s);
    }

    QVariant um(const QString &sql) const { return instalacao.linha(sql).value(0); }
    int linhasGuardadas() const { return um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(); }

    Instalacao instalacao;
    BotaoDeTeste leitor;
    QPointer<QWidget> form;
};
