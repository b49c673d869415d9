#pragma once

#include "views/forms/formListagem.h"
#include "views/forms/painelVista.h"

class Grelha;
class QCheckBox;

// Rows of what is chosen in a panel, in a range: readings with their notes, and alarms.
class FonteLinhas : public FonteListagem {
public:
    FonteLinhas(const MembroListagem &membro, FabricaPainel fabrica)
        : m_membro(membro), m_fabrica(std::move(fabrica)) {}
    PainelVista *criarPainel(QWidget *pai) override;
    ConsultaListagem consulta() const override;
    QList<std::pair<QString, QString>> cabecalhos() const override { return m_impressos; }

private:
    QCheckBox *criarCaixa(const QString &nome, const QString &omissao) const;
    const MembroListagem &m_membro;
    FabricaPainel m_fabrica;
    PainelVista *m_painel = nullptr;
    QCheckBox *m_soComNota = nullptr;
    QCheckBox *m_soMedias = nullptr;
    mutable QList<std::pair<QString, QString>> m_impressos; // of the last query
};

// The panel of views over devices: one of them, or all.
class PainelDispositivos : public PainelVista {
    Q_OBJECT
public:
    PainelDispositivos(const QString &form, QWidget *pai);
    QList<Escolha> escolhas() const override; // one device; without a key: all of them

protected:
    QWidget *primeiroControlo() const override;

private:
    void encher();
    Grelha *m_grdDispositivos;
};

class FonteDispositivos : public FonteListagem {
public:
    explicit FonteDispositivos(const MembroListagem &membro) : m_membro(membro) {}
    PainelVista *criarPainel(QWidget *pai) override;
    ConsultaListagem consulta() const override;
    QList<std::pair<QString, QString>> cabecalhos() const override;

private:
    const MembroListagem &m_membro;
    PainelDispositivos *m_painel = nullptr;
    mutable QString m_impresso; // the device of the last query, as printed
};

std::unique_ptr<FonteListagem> criarFonteListagem(const MembroListagem &membro);
