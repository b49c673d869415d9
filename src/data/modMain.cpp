#include "data/modMain.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modErros.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <QFileInfo>

namespace {

const QString seccaoBD = u"BD"_s;
const QString chaveMAIN = u"MAIN"_s;

QString avisoDaBaseInexistente() {
    return modTraducoes::texto(u"VISTREL_modMain"_s, u"Aviso"_s, u"AVISO: Base de Dados Inexistente."_s) + u"\n\"" +
           estado().CaminhoBD + u'"';
}

void avisarBaseInexistente() {
    if (Dialogos *dialogos = estado().ambiente.dialogos)
        dialogos->mensagem(avisoDaBaseInexistente());
}

// One question instead of the warning. True when another path is stored.
bool escolherOutraBase() {
    Dialogos *dialogos = estado().ambiente.dialogos;
    const QString pergunta =
        modTraducoes::texto(u"VISTREL_modMain"_s, u"Escolher"_s, u"Deseja escolher o ficheiro da base de dados?"_s);
    if (!dialogos || !dialogos->pergunta(avisoDaBaseInexistente() + u'\n' + pergunta))
        return false;
    const QString escolhida = dialogos->abrirFicheiro(u"Kelvark BD (*.mdb)|*.mdb|Kelvark BD (*.mde)|*.mde"_s,
                                                      QFileInfo(estado().CaminhoBD).path());
    if (escolhida.isEmpty())
        return false;
    modINI::Guardar(estado().NomePrograma, {{seccaoBD, chaveMAIN, escolhida}});
    return true;
}

class Ampulheta {
public:
    Ampulheta() { ligar(true); }
    ~Ampulheta() { ligar(false); }
    Ampulheta(const Ampulheta &) = delete;
    Ampulheta &operator=(const Ampulheta &) = delete;

private:
    static void ligar(bool ligada) {
        if (Apresentador *a = estado().ambiente.apresentador)
            a->ampulheta(ligada);
    }
};

} // namespace

namespace modMain {

QString caminhoBDPorOmissao() {
    // The test is on the first character: a folder that begins with a backslash gets no separator.
    QString pasta = estado().PastaPrograma;
    if (!pasta.startsWith(u'\\'))
        pasta += u'/';
    return pasta + u"BD/Kelvark.mdb";
}

bool carregaGlobaisBD(bool escolher) {
    const QString &ficheiro = estado().NomePrograma;
    Ligacao &ligacao = ligacaoPartilhada();
    try {
        const Ampulheta ampulheta;
        if (modINI::GetSetting(ficheiro, seccaoBD, chaveMAIN).isEmpty())
            modINI::SaveSetting(ficheiro, seccaoBD, chaveMAIN, caminhoBDPorOmissao());
        passarEventos();
        estado().CaminhoBD = modINI::GetSetting(ficheiro, seccaoBD, chaveMAIN);
        if (estado().CaminhoBD.isEmpty()) // it could not be stored
            estado().CaminhoBD = caminhoBDPorOmissao();
        // Asked of the connection too: a failed opening leaves BDLigada as it was, and a good path given after a bad
        // one must not be met with the warning of a missing database.
        if (estado().BDLigada && ligacao.aberta())
            ligacao.fechar();
        ligacao.abrir(estado().CaminhoBD);
        estado().BDLigada = true;
        return true;
    } catch (const Falha &f) {
        switch (f.numero()) {
        case erros::objectoAberto:
            ligacao.fechar();
            [[fallthrough]];
        case erros::objectoFechado:
        case erros::falhaGeralBD:
            estado().BDLigada = false;
            if (!escolher || f.numero() != erros::falhaGeralBD)
                avisarBaseInexistente();
            else if (Rotina("modMain.carregaGlobaisBD", escolherOutraBase))
                return carregaGlobaisBD(escolher);
            break;
        default:
            modErros::tratarExcepcaoCorrente("modMain.carregaGlobaisBD");
        }
    } catch (...) {
        modErros::tratarExcepcaoCorrente("modMain.carregaGlobaisBD");
    }
    return false;
}

void vigiarBD() {
    Rotina("modMain.vigiarBD", [] {
        const QString novidade = ligacaoPartilhada().novidadeDoLugar();
        if (Dialogos *dialogos = estado().ambiente.dialogos; dialogos && !novidade.isEmpty())
            dialogos->mensagem(novidade, Dialogos::Estilo::Exclamacao);
    });
}

QString VerificaDatas(const QString &inicio, const QString &fim) {
    const QDateTime i = datas::lerDataHora(inicio);
    const QDateTime f = datas::lerDataHora(fim);
    return i.isValid() && f.isValid() && i < f ? u"TRUE"_s : u"FALSE"_s;
}

bool VerificaSeSensorEstaDesactivo(const QString &sensorId) {
    return Rotina("modMain.VerificaSeSensorEstaDesactivo", [&] {
        Recordset rs = cnBD().consultar(u"select Seleccionado from Sensores where SensorID = ?"_s, {sensorId});
        return !rs.avancar() || rs.texto(0) != QLatin1String("SIM");
    });
}

} // namespace modMain
