#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringList>

#include <functional>

// Message boxes and pickers. The shell installs the real ones; a test answers for the user.
class Dialogos {
public:
    virtual ~Dialogos() = default;
    enum class Estilo { Informacao, Exclamacao, Critico };
    virtual void mensagem(const QString &texto, Estilo estilo = Estilo::Informacao) = 0;
    virtual bool pergunta(const QString &texto) = 0; // true: yes
    // One of several; -1: none. <actual> is marked at first, -1 leaves the choice wholly to the user.
    virtual int escolher(const QString &texto, const QStringList &opcoes, int actual) = 0;
    // Empty results mean cancelled. Filters have the form "csv (*.csv)|*.csv".
    virtual QString abrirFicheiro(const QString &filtro, const QString &pasta) = 0;
    virtual QString gravarFicheiro(const QString &nomeProposto, const QString &pasta, const QString &filtro) = 0;
    virtual QString escolherPasta(const QString &inicio) = 0;
    // A message with one more button; true: that was pressed.
    virtual bool mensagemComBotao(const QString &texto, const QString &botao) = 0;
    // Shows a folder in the desktop's own program; false when there is none.
    virtual bool abrirPasta(const QString &pasta) = 0;
};

// What the error road and long routines need of the windows, which core does not know.
class Apresentador {
public:
    virtual ~Apresentador() = default;
    virtual bool FormEstaActivo(const QString &nome) = 0;
    // The error dialog: load it with the sentence it says and its details, show it (false: could not be shown), bring
    // it to the front.
    virtual void carregarErro(const QString &frase, const QString &mensagem) = 0;
    virtual bool mostrarErro() = 0;
    virtual void destacarErro(const QString &mensagem) = 0;
    virtual void ampulheta(bool ligada) = 0;
};

// Everything asked of the surroundings, each replaceable. Times are wall-clock times carried as UTC.
struct Ambiente {
    Ambiente();
    std::function<QDateTime()> agora;
    std::function<bool()> redeLigada;
    QLocale locale;
    // Told of every text that is looked up; for the test of the language files.
    std::function<void(const QString &seccao, const QString &chave, const QString &omissao)> textoPedido;
    // On the thread that confirms a large batch, before it begins; for tests of what happens meanwhile.
    std::function<void()> aoConfirmar;
    Dialogos *dialogos = nullptr;
    Apresentador *apresentador = nullptr;
};
