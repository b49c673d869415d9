#pragma once

#include "platform/forms/lugar.h"

#include <QWidget>

class PainelVista;
class QHBoxLayout;
class QLabel;
class QPushButton;

// What all views are made of: a strip with cmdOpccoes, the average and the two output buttons; the view itself; the
// options panel over it; a remembered place.
class FormVista : public QWidget {
    Q_OBJECT
public:
    enum class Exportacao { Menu, Imagem, Nenhuma };
    struct Config {
        QString form;
        QString chaveTitulo;
        QString titulo;
        lugar::Regra lugar;
        QSize minimo; // twips, of the whole window; a smaller window snaps back to it
        Exportacao exportacao = Exportacao::Menu;
    };
    explicit FormVista(const Config &config, QWidget *pai = nullptr);

protected:
    // Called once by the derived class, with its panel and its view.
    void montar(PainelVista *painel, QWidget *vista);
    QString texto(const QString &chave, const QString &omissao) const;
    // How wide the view opens where its width is not remembered, if the minimum is too narrow for it.
    virtual int larguraDeDesenho() const { return 0; }

    QLabel *lblMedia() const { return m_lblMedia; }
    QPushButton *cmdImprimir() const { return m_cmdImprimir; }
    QPushButton *cmdExport() const { return m_cmdExport; }

    void showEvent(QShowEvent *evento) override;
    void closeEvent(QCloseEvent *evento) override;
    void resizeEvent(QResizeEvent *evento) override;

private:
    void criarFaixa();
    void arrumar();
    QSize tamanhoMinimo();
    void respeitarMinimo();

    Config m_config;
    bool m_reposto = false;
    QWidget *m_picBorder;
    QLabel *m_lblMedia;
    QPushButton *m_cmdImprimir;
    QPushButton *m_cmdExport;
    PainelVista *m_painel = nullptr;
};
