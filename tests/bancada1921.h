#pragma once

#include "logger/forms/registar.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

// What the assistant is given.
struct Programa {
    QString registador = u"Registador Vacinas"_s;
    QString missao = u"Transporte Évora"_s;
    QString intervalo = u"10"_s;
    QString calibracao = {}; // as it is
    QString minimo = u"2,0"_s;
    QString maximo = u"8,0"_s;
    bool continuo = false;
};

// An installation, a reader with one button, and the form over both, worked as a user works it.
struct Bancada {
    explicit Bancada(simulador::Variante variante = simulador::Variante::G) {
        leitor.fazer(u"A"_s, variante);
        andar(0);
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
    void andar(int minutos) {
        leitor.andar(minutos);
        instalacao.relogio(leitor.agora().toString(u"yyyy-MM-dd HH:mm:ss"_s));
    }

    void clicar(const char *nome) const { utilizador::clicar(form, QString::fromLatin1(nome)); }
    QWidget *controlo(const char *nome) const { return utilizador::controlo<QWidget>(form, QString::fromLatin1(nome)); }
    // What a box, a label, a button or a list shows.
    QString texto(const char *nome) const {
        const QWidget *c = controlo(nome);
        return c->property(c->inherits("QComboBox") ? "currentText" : "text").toString();
    }
    void escrever(const char *nome, const QString &texto) const {
        utilizador::escrever(form, QString::fromLatin1(nome), texto);
    }
    bool permitido(const char *nome) const { return controlo(nome)->isEnabled(); }
    bool visivel(const char *nome) const { return controlo(nome)->isVisible(); }
    Grelha *amostras() const { return utilizador::controlo<Grelha>(form, u"grdTemps"_s); }
    void parar(bool sim = true) {
        instalacao.dialogos.responderPergunta(sim, u"Deseja parar a missão?"_s);
        clicar("cmdPararMissao");
    }

    // The whole assistant, from the read to its last button.
    void programar(const Programa &p = {}) const {
        clicar("lblEstado");
        clicar("cmdLer");
        clicar("cmdAvancar");
        escrever("txtDescricaoRegistador", p.registador);
        escrever("txtDescricaoMissao", p.missao);
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
    // A mission whose samples were downloaded; eleven of them after 101 minutes.
    void descarregar(int minutos = 101, const Programa &p = {}) {
        programar(p);
        andar(minutos);
        clicar("cmdLerDados");
    }

    QVariant um(const QString &sql) const { return instalacao.linha(sql).value(0); }
    int linhas(const QString &tabela = u"DS1921"_s) const { return um(u"SELECT COUNT(*) FROM "_s + tabela).toInt(); }

    Instalacao instalacao;
    BotaoDeTeste leitor;
    QPointer<QWidget> form;
};
