#pragma once

#include "core/ambiente.h"

#include <QList>
#include <QStringList>

// Doubles of the error dialog and of the message boxes. Whatever a test did not announce fails it at once, and
// verificar() fails it for what was announced and did not come. With `tolerante` whatever comes is only noted, and
// every question is answered with no.

// Every report comes here, also a second one while the dialog is open, unless `aberto` is switched on.
class ApresentadorDeTeste : public Apresentador {
public:
    // The next report must contain this text (source, number or description).
    void esperar(const QString &trecho) { m_esperados.append(trecho); }
    void verificar();
    void esquecer();

    bool FormEstaActivo(const QString &nome) override;
    void carregarErro(const QString &frase, const QString &mensagem) override;
    bool mostrarErro() override;
    void destacarErro(const QString &mensagem) override;
    void ampulheta(bool ligada) override;

    QStringList mensagens; // texts of the dialogs loaded
    QStringList activos;   // names of the loaded forms
    bool tolerante = false;
    bool abrirDeVerdade = false; // a shown dialog stays open until fechar()
    int falhasAoMostrar = 0;     // so many of the next shows fail
    int carregamentos = 0;
    int exibicoes = 0; // tries to show
    int destaques = 0;
    int ampulhetas = 0; // hourglasses on minus off
    void fechar() { activos.removeAll(QStringLiteral("frmErro")); }

private:
    QStringList m_esperados;
};

class DialogosDeTeste : public Dialogos {
public:
    // The answers, in the order of the dialogs. `trecho` is a part of the text, the filter or the proposed name.
    void esperarMensagem(const QString &trecho);
    void responderPergunta(bool sim, const QString &trecho = {});
    void responderEscolha(int qual, const QString &trecho = {});
    void responderAbrir(const QString &caminho, const QString &trecho = {}); // empty path: cancelled
    void responderGravar(const QString &caminho, const QString &trecho = {});
    void responderPasta(const QString &caminho);
    void premirBotao(const QString &trecho); // of a message that has one more
    void verificar();
    void esquecer();

    void mensagem(const QString &texto, Estilo estilo) override;
    bool pergunta(const QString &texto) override;
    int escolher(const QString &texto, const QStringList &opcoes, int actual) override;
    QString abrirFicheiro(const QString &filtro, const QString &pasta) override;
    QString gravarFicheiro(const QString &nomeProposto, const QString &pasta, const QString &filtro) override;
    QString escolherPasta(const QString &inicio) override;
    bool mensagemComBotao(const QString &texto, const QString &botao) override;
    bool abrirPasta(const QString &pasta) override;

    bool semProgramaDePastas = false;
    QStringList pastas; // opened
    bool tolerante = false;
    QStringList textos;        // everything shown or asked, in order
    QList<Estilo> estilos;     // of the messages
    QStringList ultimasOpcoes; // of a choice
    QString ultimaPasta;       // where the last picker began
    QString ultimoFiltro;      // what the last picker offered

private:
    enum class Tipo { Mensagem, Pergunta, Escolha, Abrir, Gravar, Pasta };
    struct Resposta {
        Tipo tipo;
        QString trecho;
        QString valor;
    };
    QString proxima(Tipo tipo, const QString &texto);
    QList<Resposta> m_respostas;
};

// Fails the running test function from anywhere.
void reprovar(const QString &motivo);
