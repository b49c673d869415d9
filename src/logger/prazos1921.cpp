#include "logger/prazos1921.h"

#include "core/datas.h"
#include "core/estado.h"

#include <algorithm>

namespace {

qint64 minutoDe(const QDateTime &instante) {
    const qint64 segundos = qint64(datas::segundosDe(instante));
    return segundos / 60 - (segundos % 60 < 0 ? 1 : 0);
}

} // namespace

namespace prazos1921 {

int minutosAte(const QDateTime &agora, const QDateTime &inicio) {
    return int(std::clamp<qint64>(minutoDe(inicio) - minutoDe(agora), 0, maiorAtraso));
}

QDateTime MinutosParaData(int minutos) {
    return estado().ambiente.agora().addSecs(qint64(minutos) * 60);
}

QString DataFimPrevista(const QString &inicio, const QString &intervalo) {
    const QDateTime data = datas::lerDataHora(inicio);
    return data.isValid() ? datas::textoDataHora(data.addSecs(qint64(intervalo.toInt()) * 60 * amostras)) : QString();
}

} // namespace prazos1921
