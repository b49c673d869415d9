#pragma once

#include "logger/views/listaMissoes.h"

#include <QWidget>

class Grelha;
class QButtonGroup;
class QCheckBox;
class QPushButton;
class QVBoxLayout;

// The missions in progress or the concluded ones; opens the chart of one.
class frmListagemLoggers : public QWidget {
    Q_OBJECT
public:
    explicit frmListagemLoggers(QWidget *pai = nullptr);

    void CarregarDadosNaGrelha(bool concluidas);
    void cmdImprimir_Click();

protected:
    void showEvent(QShowEvent *evento) override;
    void closeEvent(QCloseEvent *evento) override;

private:
    QString texto(const QString &chave, const QString &omissao) const;
    QCheckBox *criarCaixa(const QString &nome, const QString &omissao, bool concluidas);
    QWidget *criarMissoes();
    QWidget *criarOrdens();
    void criarGrelha();
    void mudarVista(bool concluidas);

    QCheckBox *m_chkEmCurso;
    QCheckBox *m_chkConcluidas;
    QButtonGroup *m_ordens;
    Grelha *m_grelha;
    QPushButton *m_cmdImprimir;
    QList<listaMissoes::Linha> m_linhas;
    bool m_concluidas = false;
    bool m_reposto = false;
};
