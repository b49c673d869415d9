#pragma once

#include "views/leituras.h"
#include "views/modeloListagem.h"
#include "views/regras.h"

#include <span>

// One column of a listing: on the screen and on paper.
struct ColunaListagem {
    QStringView campo; // column or expression of the query
    int largura;       // twips; 0: hidden
    QStringView chave; // of the header's text
    QStringView omissao;
    QStringView rotulo; // column label of the report; empty: not printed
    QStringView chaveRotulo;
    QStringView omissaoRotulo;
    QStringView caixa; // text box of the report
    enum class Forma { ComoEsta, LimiteMaximo, LimiteMinimo } forma = Forma::ComoEsta;
    int casas = -1; // decimals of a number; negative: as it is stored
};

// A line at the head of the page that names what the rows are of.
struct CabecalhoListagem {
    QStringView rotulo; // label of the report
    QStringView chave;
    QStringView omissao;
};

// How the rows of a listing are asked for.
enum class LigacaoListagem {
    Leituras,    // sensors and range together
    Alarmes,     // the range binds the first sensor only
    Verificados, // alarms verified by operators, of one device or of all
};

// One listing.
struct MembroListagem {
    QStringView form;
    QStringView tabela;
    const RegraTipo *regra;
    std::span<const ColunaListagem> colunas;
    QStringView titulo;
    QStringView tituloImpressao;
    QStringView relatorio;
    LigacaoListagem ligacao = LigacaoListagem::Leituras;
    bool edita = false;       // the note can be written in the grid
    bool comFiltro = true;    // chkObservacoesPreenchidas
    bool comMedias = false;   // chkLeiturasMedias
    QStringView formLugar{};  // whose saved place it shares; empty: its own
    QStringView formGrupos{}; // whose section names the row of all sensors; empty: its own
    QStringView chaveImpressao = u"PrintTitle";
    ColunasChave chave{u"Sensor"};
    bool soComNota = false;                          // rows without a note are never shown
    QStringView filtro{};                            // of few rows, in the query itself; empty: none
    std::span<const CabecalhoListagem> cabecalhos{}; // one for each value of the key
};

std::span<const MembroListagem> familiaListagens();

namespace listagens {

struct Pedido {
    Intervalo intervalo;
    QList<QStringList> chaves;
    bool soComNota = false;
    bool soMedias = false;
};

ConsultaListagem consulta(const MembroListagem &membro, const Pedido &pedido);
// The verified alarms of a device; an empty address means all, each with its device's name.
ConsultaListagem consultaVerificados(const MembroListagem &membro, const Intervalo &intervalo, const QString &ip);

} // namespace listagens
