#pragma once

#include "views/escolha.h"

// The name and the caption key of the label before the value.
struct EtiquetaValor {
    QStringView nome;
    QStringView omissao;
};

// The form of a chart's points.
struct MembroPontos {
    QStringView form;
    QStringView grafico;
    QStringView tabela;
    EtiquetaValor valor;
    QStringView seccaoDe{}; // whose texts it uses; empty: its own
    QStringView legendaChave = u"Sensor";
    ColunasChave chave{u"Sensor"};
    QStringView data = u"Data";
    QStringView dataDoZero{}; // of points at height 0, where a row holds two; empty: the same
};

namespace familiaPontos {

inline constexpr EtiquetaValor temperatura{u"lblTemp", u"Temperatura"};
inline constexpr EtiquetaValor percentagem{u"lblHum", u"Humidade"};
inline constexpr EtiquetaValor leituraPressao{u"lblTemp", u"Pressão"};
inline constexpr EtiquetaValor leituraOrvalho{u"lblTemp", u"P. Orvalho"};

inline constexpr MembroPontos medias{u"frmOpccoesMediasPontos", u"frmGraficoPrincipal", u"Medias", temperatura};
inline constexpr MembroPontos temperaturas{u"frmOpccoesTempPontos", u"frmGraficoPrincipalTemp", u"Temperaturas",
                                           temperatura};
inline constexpr MembroPontos humidade{u"frmOpccoesHumidadePontos", u"frmGraficoPrincipalHumidade", u"Humidade",
                                       percentagem};
inline constexpr MembroPontos pressao{u"frmOpccoesPressaoPontos", u"frmGraficoPrincipalPressao", u"Pressao",
                                      leituraPressao};
inline constexpr MembroPontos pontoDeOrvalho{u"frmOpccoesDPCPontos", u"frmGraficoPrincipalDPC", u"Pontoorvalho",
                                             leituraOrvalho};
inline constexpr MembroPontos temperaturasPull{u"frmOpccoesTempPontosPull", u"frmGraficoPrincipalTempPull",
                                               u"TemperaturasPull", temperatura};
inline constexpr MembroPontos humidadePull{u"frmOpccoesHumidadePontosPull", u"frmGraficoPrincipalHumidadePull",
                                           u"HumidadePull", percentagem, u"frmOpccoesHumidadePontos"};
inline constexpr MembroPontos pressaoPull{u"frmOpccoesPressaoPontosPull", u"frmGraficoPrincipalPressaoPull",
                                          u"PressaoPull", leituraPressao};
inline constexpr MembroPontos pontoDeOrvalhoPull{u"frmOpccoesDPCPontosPull", u"frmGraficoPrincipalDPCPull",
                                                 u"PontoorvalhoPull", leituraOrvalho};

} // namespace familiaPontos
