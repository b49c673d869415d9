#include "simulator/unidades/definicao.h"

#include "core/estado.h"

#include <QHostAddress>

namespace simulador {

namespace {

QList<Canal> canaisHabituais(const QString &nome) {
    const auto chamado = [&nome](const QString &resto) { return QString(nome.left(12) + u' ' + resto); };
    return {
        {u"101"_s, chamado(u"Ar"_s), u"C"_s, 4.0, 1.8, 1.0, 7.0},
        {u"102"_s, chamado(u"Produto"_s), u"C"_s, 3.5, 0.9, 0.0, 8.0},
        {u"103"_s, chamado(u"Evap."_s), u"C"_s, -18.5, 3.0, -25.0, -12.0},
        {u"104"_s, chamado(u"Hum."_s), u"%RH"_s, 72.0, 9.0, 50.0, 90.0},
        {u"105"_s, chamado(u"Cais"_s), u"C"_s, 0.0, 0.0, 0.0, 0.0, false},
        {u"201"_s, chamado(u"Press."_s), u"mA"_s, 11.2, 2.5, 6.0, 18.0},
        {u"202"_s, chamado(u"Tensão"_s), u"V"_s, 7.4, 1.2, 2.0, 12.0},
        {u"28201"_s, chamado(u"Antecam."_s), u"C"_s, 9.0, 4.0, 2.0, 15.0}, // on the remote bus
        {u"28202"_s, chamado(u"Antecam. H"_s), u"%RH"_s, 61.0, 12.0, 30.0, 85.0},
        {u"301"_s, chamado(u"Porta"_s), u"s"_s},
        {u"302"_s, chamado(u"Degelo"_s), u"s"_s},
    };
}

} // namespace

QString nomeDoModelo(int modelo) {
    return modelo == 34 ? u"Poseidon 2250"_s : u"Poseidon 2251"_s;
}

Definicao completa(Definicao d) {
    const quint32 ip = QHostAddress(d.endereco).toIPv4Address();
    if (d.nome.isEmpty())
        d.nome = u"Unidade "_s + d.endereco.section(u'.', -1);
    if (d.mac.isEmpty()) // locally administered, one for each address
        d.mac = u"02:00:"_s + QString::fromLatin1(QByteArray::number(ip, 16).rightJustified(8, '0'))
                                  .toUpper()
                                  .insert(6, u':')
                                  .insert(4, u':')
                                  .insert(2, u':');
    if (d.defeitos.tem(Defeito::LogMilhao)) {
        d.registos = 1'000'000;
        d.intervalo = 60;
    }
    if (d.canais.isEmpty())
        d.canais = canaisHabituais(d.nome);
    if (!d.agora)
        d.agora = [] { return estado().ambiente.agora(); };
    return d;
}

} // namespace simulador
