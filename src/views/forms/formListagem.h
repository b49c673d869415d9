#pragma once

#include "views/familiaListagens.h"
#include "views/forms/formVista.h"
#include "views/forms/painelVista.h"

#include <QItemSelection>

#include <memory>

class QTableView;
class QLabel;

// What a listing chooses from: gives the panel, and the query for what is chosen in it.
class FonteListagem {
public:
    virtual ~FonteListagem() = default;
    virtual PainelVista *criarPainel(QWidget *pai) = 0;
    virtual ConsultaListagem consulta() const = 0;
    // Further labels at the head of the page, by their names, where the report has room for them.
    virtual QList<std::pair<QString, QString>> cabecalhos() const { return {}; }
};

// A listing of the family: its row says what it shows, its source what it chooses from.
class FormListagem : public FormVista {
    Q_OBJECT
public:
    FormListagem(const MembroListagem &membro, std::unique_ptr<FonteListagem> fonte, QWidget *pai = nullptr);
    ~FormListagem() override;

    void CarregarDadosNaGrelha();

protected:
    int larguraDeDesenho() const override;
    bool eventFilter(QObject *objecto, QEvent *evento) override;

private:
    void criarGrelha();
    QString tituloDe(const ColunaListagem &coluna) const;
    int larguraDe(const ColunaListagem &coluna) const;
    void aplicarColunas();
    void estenderEscolha(int primeiraNova, int ultimaNova);
    QItemSelectionRange areaEscolhida() const;
    void copiar();
    void mostrarTotal();
    void cmdImprimir_Click();

    const MembroListagem &m_membro;
    std::unique_ptr<FonteListagem> m_fonte;
    PainelVista *m_painel;
    QTableView *m_grelha;
    ModeloListagem m_modelo;
    Confirmado m_mostrado;
};
