#pragma once

#include "core/literais.h"
#include "views/leituras.h"

#include <QDateTime>
#include <QFrame>

#include <functional>

class QDateEdit;
class QTimeEdit;
class QLabel;
class QPushButton;
class QTimer;
class QToolButton;
class QVBoxLayout;
class QVariantAnimation;
class PainelVista;

// What was confirmed in a panel. A view keeps it beside what it draws: paper, pictures and files tell of that, whatever
// is chosen in the panel by then.
struct Confirmado {
    QList<Escolha> escolhas;
    QDateTime inicio, fim;
    QString descricao; // what a printed page says of it

    bool vazio() const { return escolhas.isEmpty(); }
    Intervalo intervalo() const { return {inicio, fim}; }
};

// Makes the panel of a view; the view owns it.
using FabricaPainel = std::function<PainelVista *(QWidget *vista)>;

// The options panel that every view has: the range of dates with its check, the confirm button, and above them what
// the view chooses from. It slides over the view from under cmdOpccoes.
class PainelVista : public QFrame {
    Q_OBJECT
public:
    // <form> is the name of the view; the panel's texts are in its section.
    PainelVista(const QString &form, QWidget *pai, const QString &titulo = u"Opcoes do Grafico"_s);

    QToolButton *cmdOpccoes() const { return m_cmdOpccoes; }
    // Where the panel may lie; it takes what it needs of the area, from the top left.
    void setArea(const QRect &area);
    QSize tamanhoMinimo() const;
    QSize tamanhoAberto() const;

    bool aberto() const { return m_aberto; }
    void abrir();
    void fechar(bool deslizar = true);
    void cmdOpccoes_Click();
    void cmdConfirmar_Click();

    QString textoInicio() const;
    QString textoFim() const;
    QDateTime inicio() const;
    QDateTime fim() const;
    // What a view asks beyond the range, beside it.
    void juntarOpcao(const QList<QWidget *> &controlos);
    void setPeriodo(const QDate &de, const QDate &ate);
    void setIntervalo(const QDateTime &de, const QDateTime &ate);

    // What is chosen, in order.
    virtual QList<Escolha> escolhas() const = 0;
    // All that a view draws and hands on is told from; may ask the database. Throws Falha.
    Confirmado confirmado() const;

Q_SIGNALS:
    void retirada(const QStringList &chave); // what was chosen by it is no longer stored
    void carregar();                         // a good range was confirmed, and something is chosen
    void aberturaMudou(bool aberto);
    void focoParaVista();

protected:
    // What a printed page says of the choice and of the range.
    virtual QString descricao(const QString &inicio, const QString &fim) const;
    virtual bool comSeleccao() const { return !escolhas().isEmpty(); }
    virtual void fecharSubpaineis() {}
    virtual int larguraPreferida() const { return 0; }
    virtual QWidget *primeiroControlo() const = 0;
    QString texto(const QString &chave, const QString &omissao) const;
    QVBoxLayout *areaDeEscolha() const { return m_escolha; }
    void keyPressEvent(QKeyEvent *evento) override;

private:
    void criarDatas(QVBoxLayout *disposicao);
    QPushButton *criarPeriodos();
    void TimerErrorDate_Timer();
    void ordenarFoco();
    void colocar(int alturaVisivel);

    QString m_form;
    bool m_aberto = false;
    QRect m_area;
    QVBoxLayout *m_escolha;
    QVBoxLayout *m_opcoes;
    QToolButton *m_cmdOpccoes;
    QDateEdit *m_dataInicio;
    QTimeEdit *m_horaInicio;
    QDateEdit *m_dataFim;
    QTimeEdit *m_horaFim;
    QLabel *m_imgErrorDate;
    QTimer *m_timerErrorDate;
    int m_piscadelas = 0;
    QVariantAnimation *m_deslize;
};
