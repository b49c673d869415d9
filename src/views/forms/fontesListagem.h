#pragma once

#include "views/forms/formListagem.h"
#include "views/forms/painelVista.h"

class Grelha;
class PainelSensores;
class QCheckBox;

// Sensors and a range: readings with their notes, and alarms.
class FonteSensores : public FonteListagem {
public:
    explicit FonteSensores(const MembroListagem &membro) : m_membro(membro) {}
    PainelVista *criarPainel(QWidget *pai) override;
    ConsultaListagem consulta() const override;
    QString descricao(const QString &inicio, const QString &fim) const override;

private:
    QCheckBox *criarCaixa(const QString &nome, const QString &omissao) const;
    const MembroListagem &m_membro;
    PainelSensores *m_painel = nullptr;
    QCheckBox *m_soComNota = nullptr;
    QCheckBox *m_soMedias = nullptr;
};

// The panel of views over devices: one of them, or all.
class PainelDispositivos : public PainelVista {
    Q_OBJECT
public:
    PainelDispositivos(const QString &form, QWidget *pai);
    QString ip() const;   // empty: all
    QString nome() const; // of the chosen device

protected:
    bool comSeleccao() const override { return true; }
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
    QString descricao(const QString &inicio, const QString &fim) const override;
    QString dispositivos() const override { return m_impresso; }

private:
    const MembroListagem &m_membro;
    PainelDispositivos *m_painel = nullptr;
    mutable QString m_impresso; // the device of the last query, as printed
};

std::unique_ptr<FonteListagem> criarFonteListagem(const MembroListagem &membro);
