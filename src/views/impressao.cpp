#include "views/impressao.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "data/modMain.h"

namespace {

constexpr qsizetype maximoDaLista = 725;
constexpr qsizetype corteDaLista = 721;

QString intervalo(const QString &inicio, const QString &fim) {
    return inicio + u" <> " + fim;
}

QString daUnidade(const QString &ip, const QString &inicio, const QString &fim) {
    QString nome;
    QString mac;
    modMain::BuscarNomePoseidonPorID(ip, nome, mac);
    return u"Poseidon: " + ip + u" - " + nome + u" - " + mac + u"           " + intervalo(inicio, fim);
}

} // namespace

namespace impressao {

QString descricao(const QString &tagDoFiltro, const QList<Sensor> &seleccao, const QString &inicio,
                  const QString &fim) {
    if (const QString ip = sensores::unidadeDaTag(tagDoFiltro); !ip.isEmpty())
        return daUnidade(ip, inicio, fim);
    if (seleccao.size() == 1) {
        // The stored value is one mode digit and the address.
        const QString ip = modMain::BuscarPoseidonPorIDSensor(seleccao.first().id).trimmed();
        if (!ip.isEmpty())
            return daUnidade(ip.mid(1), inicio, fim);
    }
    return intervalo(inicio, fim);
}

QString listaDeSensores(const QString &prefixo, const QList<Sensor> &seleccao) {
    QString lista = prefixo;
    for (const Sensor &sensor : seleccao)
        lista += sensor.nome + u" [" + sensor.id + u']';
    return lista.size() > maximoDaLista ? lista.left(corteDaLista) + u" ..." : lista;
}

QString dataHora() {
    const QDateTime agora = estado().ambiente.agora();
    return datas::textoData(agora.date()) + u' ' + datas::textoHora(agora.time());
}

} // namespace impressao
