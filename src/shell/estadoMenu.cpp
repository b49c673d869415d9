#include "shell/estadoMenu.h"

#include "core/literais.h"
#include "core/rotina.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "views/nomesDasVistas.h"

#include <QStringList>

#include <array>

namespace {

// Scaled inputs, by the last character of their type; the quantities have theirs in their rows.
constexpr QStringView letrasSensUI = u"VA";

struct PorTabela {
    QStringView tabela;
    std::array<QStringView, 5> estados;
};
constexpr PorTabela porTabela[] = {
    {u"REGISTO_C_Grupos", {u"mnuCondicoes", u"Graficos", u"mnuCondicoesGrupCond"}},
    {u"REGISTO_C_Inputs", {u"mnuCondicoes", u"Graficos", u"mnuCondicoesInputs"}},
    {u"REGISTO_C_Sensores", {u"mnuCondicoes", u"Graficos", u"mnuCondicoesSensores"}},
    {u"REGISTO_Inputs", {u"mnuInputsOutputs", u"Graficos", u"mnuInputsOutputsInputs"}},
    {u"REGISTO_Outputs", {u"mnuInputsOutputs", u"Graficos", u"mnuInputsOutputsOutputs"}},
    {u"DS1921head", {u"Registador", u"Graficos", u"Registadores", u"Listagens", u"RegistadorControl"}},
};

template <typename Estados>
void levantar(QSet<QString> &conjunto, const Estados &estados) {
    for (const QStringView estado : estados)
        if (!estado.isEmpty())
            conjunto.insert(estado.toString());
}

} // namespace

namespace estadoMenu {

void BuscarEstadoMenu(QSet<QString> &estados) {
    estados.remove(u"RegistadorControl"_s);
    estados.remove(u"Alarmes"_s);
    if (!ligacaoPartilhada().aberta()) // why not has been told already
        return;
    Rotina("frmMain.BuscarEstadoMenu", [&] {
        Recordset tipos = cnBD().consultar(u"SELECT DISTINCT Tipo FROM Sensores WHERE Tipo IS NOT NULL"_s);
        while (tipos.avancar()) {
            const QString letra = tipos.texto(0).right(1);
            if (letra.isEmpty())
                continue;
            for (const Grandeza &g : grandezas::tabela)
                if (g.regra.letras.contains(letra))
                    levantar(estados, std::array<QStringView, 4>{nomesDasVistas::ramoDosGraficos(g),
                                                                 nomesDasVistas::ramoDasListagens(g), u"Graficos",
                                                                 u"Listagens"});
            if (letrasSensUI.contains(letra))
                levantar(estados, std::array<QStringView, 4>{u"SensUi", u"ListagensSensUI", u"Graficos", u"Listagens"});
        }
        for (const PorTabela &linha : porTabela)
            if (cnBD().consultar(u"SELECT 1 FROM "_s + linha.tabela + u" LIMIT 1").avancar())
                levantar(estados, linha.estados);
        if (VerificaSeTabelaExiste_MaskListaAlarmes())
            levantar(estados, std::array<QStringView, 2>{u"Listagens", u"Alarmes"});
    });
}

bool VerificaSeTabelaExiste_MaskListaAlarmes() {
    return Rotina("frmMain.VerificaSeTabelaExiste_MaskListaAlarmes", [] {
        Recordset rs =
            cnBD().consultar(u"SELECT DataI FROM MaskListaAlarmes ORDER BY "_s + dialecto::ordem + u" LIMIT 1");
        return rs.avancar() && rs.dataHora(0).isValid();
    });
}

} // namespace estadoMenu
