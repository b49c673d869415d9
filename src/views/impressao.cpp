#include "views/impressao.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/textoMostrado.h"
#include "data/modMain.h"
#include "views/sensores.h"

namespace {

constexpr qsizetype maximoDaLista = 725;
constexpr qsizetype corteDaLista = 721;

QString intervalo(const QString &inicio, const QString &fim) {
    return inicio + u" <> " + fim;
}

QString daUnidade(const QString &ip, bool semMac, const QString &inicio, const QString &fim) {
    QString nome;
    QString mac;
    modMain::BuscarNomePoseidonPorID(ip, nome, mac);
    const QString unidade = u"Poseidon: " + ip + u" - " + nome;
    return textoMostrado::linha(semMac ? unidade : unidade + u" - " + mac) + u"           " + intervalo(inicio, fim);
}

} // namespace

namespace impressao {

QString descricao(const QString &tagDoFiltro, const QString &unicoSensor, const QString &inicio, const QString &fim,
                  bool semMac) {
    if (const QString ip = sensores::unidadeDaTag(tagDoFiltro); !ip.isEmpty())
        return daUnidade(ip, semMac, inicio, fim);
    if (!unicoSensor.isEmpty()) {
        // The stored value is one mode digit and the address.
        const QString ip = modMain::BuscarPoseidonPorIDSensor(unicoSensor).trimmed();
        if (!ip.isEmpty())
            return daUnidade(ip.mid(1), semMac, inicio, fim);
    }
    return intervalo(inicio, fim);
}

QString listaDeSensores(const QString &prefixo, const QList<Nomeado> &seleccao) {
    QString lista = prefixo;
    for (const Nomeado &sensor : seleccao)
        lista += textoMostrado::linha(sensor.nome, maximoDaLista) + u" [" + sensor.parenteses + u']';
    return lista.size() > maximoDaLista ? lista.left(corteDaLista) + u" ..." : lista;
}

QString dataHora() {
    const QDateTime agora = estado().ambiente.agora();
    return datas::textoData(agora.date()) + u' ' + datas::textoHora(agora.time());
}

} // namespace impressao
