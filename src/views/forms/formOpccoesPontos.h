#pragma once

#include "views/familiaPontos.h"
#include "views/notas.h"
#include "views/pontoActual.h"

#include <QDialog>
#include <QPointer>

class QLineEdit;
class QPlainTextEdit;
class TChart;

// Shows one point of a chart and lets the user write the note of its reading.
class FormOpccoesPontos : public QDialog {
    Q_OBJECT
public:
    FormOpccoesPontos(const MembroPontos &membro, const PontoActual &ponto, TChart *chart, QWidget *dono);

protected:
    bool eventFilter(QObject *objecto, QEvent *evento) override;

private:
    QLineEdit *criarCampo(const QString &nome, const QString &texto);
    QString texto(const QString &chave, const QString &omissao) const;
    void montar();
    void CarregarDescricao();
    void cmdConcluir_Click();
    void marcarPonto(bool comNota);

    const MembroPontos &m_membro;
    const PontoActual m_ponto;
    QPointer<TChart> m_chart;
    std::optional<notas::Linha> m_linha; // as it was when the note was shown
    QString m_mostrada;                  // in the box, before the user wrote
    QLineEdit *m_data = nullptr;
    QLineEdit *m_sensor = nullptr;
    QPlainTextEdit *m_observacoes = nullptr;
};
