#pragma once

#include "devicestate/condicoes.h"
#include "devicestate/entradas.h"
#include "views/forms/painelVista.h"

class ListaMarcada;

// The panel of the inputs' and outputs' charts: devices, and the channels of those that are ticked.
class PainelCanais : public PainelVista {
    Q_OBJECT
public:
    PainelCanais(const entradas::Especie &especie, QWidget *pai);

    void CarregarListaGeral();
    void CarregarListaGeral_Canais(const QString &ip);
    QList<Escolha> escolhas() const override;

protected:
    QWidget *primeiroControlo() const override;

private:
    bool VerificarSeIPjaEstaNaLista(const QString &ip) const;
    void dispositivoMudou(int linha);

    const entradas::Especie &m_especie;
    ListaMarcada *m_grdDispositivos;
    ListaMarcada *m_canais;
    QStringList m_ipsDosCanais; // of each row of m_canais
};

// The panel of the conditions' charts.
class PainelCondicoes : public PainelVista {
    Q_OBJECT
public:
    PainelCondicoes(const condicoes::Especie &especie, QWidget *pai);

    void CarregarListaGeral();
    QList<Escolha> escolhas() const override;

protected:
    QWidget *primeiroControlo() const override;

private:
    const condicoes::Especie &m_especie;
    ListaMarcada *m_grdCondicoes;
};
