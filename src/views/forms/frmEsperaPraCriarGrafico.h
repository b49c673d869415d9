#pragma once

#include <QDialog>

// What there is to wait for.
enum class Trabalho { Grafico, Exportacao, Copia };

// The small window shown while a view loads or hands on. It blocks nothing; Escape and its button ask to stop.
class frmEsperaPraCriarGrafico : public QDialog {
    Q_OBJECT
public:
    explicit frmEsperaPraCriarGrafico(QWidget *dono, Trabalho trabalho = Trabalho::Grafico);

Q_SIGNALS:
    void cancelar();

protected:
    void reject() override;
};

// A load in progress: the wait window stands (it shows itself when the load takes long enough to be noticed) and the
// main window is disabled. Whatever way the load ends, the destructor restores both.
class CargaEmCurso {
public:
    explicit CargaEmCurso(QWidget *form, Trabalho trabalho = Trabalho::Grafico);
    ~CargaEmCurso();
    CargaEmCurso(const CargaEmCurso &) = delete;
    CargaEmCurso &operator=(const CargaEmCurso &) = delete;
    frmEsperaPraCriarGrafico *espera() const { return m_espera; }

private:
    QPointer<QWidget> m_desactivado;
    QPointer<frmEsperaPraCriarGrafico> m_espera;
};
