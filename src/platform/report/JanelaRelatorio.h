#pragma once

#include "platform/report/DataReport.h"

#include <QWidget>

#include <functional>
#include <memory>

class QAction;
class QComboBox;
class QLabel;
class QPagedPaintDevice;
class QPainter;
class QProgressBar;
class QScrollArea;
class QSpinBox;
class FolhaDeRelatorio;

// The preview of a report: pages on screen, from here to a printer or a PDF file. Laying out a long report shows its
// progress and can be stopped; a stopped one closes, so that nobody takes a part for the whole.
class JanelaRelatorio : public QWidget {
    Q_OBJECT
public:
    JanelaRelatorio(std::unique_ptr<DataReport> relatorio, const QString &titulo, QWidget *dono = nullptr);
    ~JanelaRelatorio() override;

    // Shows the window and lays the report out; false when it was stopped or closed meanwhile.
    bool mostrar();
    DataReport &relatorio() { return *m_relatorio; }
    // The folder that the dialog for PDF files begins in, asked for when it opens.
    void setPasta(std::function<QString()> pasta) { m_pasta = std::move(pasta); }
    // Writes pages, all without a last one, on this paper or on their own; Falha when the file cannot be written. False
    // when stopped.
    bool gravarPDF(const QString &caminho, int primeira = 0, int ultima = -1, const QPageLayout &papel = {});

protected:
    void keyPressEvent(QKeyEvent *evento) override;
    bool eventFilter(QObject *objecto, QEvent *evento) override;
    void resizeEvent(QResizeEvent *evento) override;
    void closeEvent(QCloseEvent *evento) override;

private:
    void construirBarra();
    bool preparar();
    void irPara(int pagina);
    bool folhear(int tecla); // false: the key turns no page
    void ajustarFolha();
    void imprimir();
    void pedirPDF();
    void parar() { m_parado = true; }
    bool pintarPaginas(QPagedPaintDevice &papel, QPainter &pintor, int primeira, int ultima);
    void ocupado(bool sim, const QString &texto = {});
    bool progredir(qint64 feitas, qint64 total);

    std::unique_ptr<DataReport> m_relatorio;
    std::function<QString()> m_pasta;
    QAction *m_imprimir = nullptr;
    QAction *m_pdf = nullptr;
    QAction *m_anterior = nullptr;
    QAction *m_seguinte = nullptr;
    QAction *m_parar = nullptr;
    QSpinBox *m_pagina = nullptr;
    QLabel *m_total = nullptr;
    QComboBox *m_zoom = nullptr;
    QProgressBar *m_progresso = nullptr;
    QAction *m_accaoProgresso = nullptr;
    QScrollArea *m_rolo = nullptr;
    FolhaDeRelatorio *m_folha = nullptr;
    bool m_parado = false;
    bool m_ocupado = false;
};
