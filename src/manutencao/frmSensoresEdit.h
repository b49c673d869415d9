#pragma once

#include "data/fusaoSensores.h"

#include <QDialog>

#include <memory>
#include <vector>

class Grelha;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTimer;

// Merges sensors into others and removes sensors with their data. What a confirmation will do is shown beforehand, and
// a dated copy of the database is made before anything changes.
class frmSensoresEdit : public QDialog {
    Q_OBJECT
public:
    explicit frmSensoresEdit(QWidget *dono);
    ~frmSensoresEdit() override;

    void done(int resultado) override;

protected:
    bool eventFilter(QObject *objecto, QEvent *evento) override;

private:
    void montar();
    void Form_Load();
    void editar(int linha);
    void terminarEdicao(bool guardar);
    void menuDaLinha(const QPoint &onde);
    void alternarEliminacao(int linha);
    bool marcada(int linha) const;
    fusaoSensores::AlteracaoSensor alteracao(int linha) const;
    std::vector<fusaoSensores::AlteracaoSensor> alteracoes() const;
    void resumirDepois();
    void mostrarResumo();
    QString avisos(const std::vector<fusaoSensores::AlteracaoSensor> &lista) const;
    void cmdConfirmar_Click();
    void copiar(const Vigia &vigia);
    void executar(const Vigia &vigia);
    void ocupar(bool ocupado);

    Grelha *m_grelha;
    QLineEdit *m_txtEdit;
    Grelha *m_resumo;
    QLabel *m_lblResumo;
    QProgressBar *m_progresso;
    QPushButton *m_cmdConfirmar;
    QTimer *m_espera;
    std::unique_ptr<QObject> m_trabalho; // gone: what runs under it stops
    QString m_copia;
    int m_linhaEditada = -1;
    bool m_ocupado = false;
};
