#include "demo/unidadesVirtuais.h"

#include "core/literais.h"
#include "demo/catalogo.h"
#include "demo/historia.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace demonstracao {

namespace {

constexpr QStringView enderecos[] = {u"127.0.0.2", u"127.0.0.3"};

QString linhaDoCanal(const QStringList &partes) {
    return u"--canal="_s + partes.join(u';') + u'\n';
}

} // namespace

bool unidadeVirtual(QStringView endereco) {
    return std::find(std::begin(enderecos), std::end(enderecos), endereco) != std::end(enderecos);
}

Leituras leiturasDasUnidades(quint64 semente) {
    QHash<QString, Sensor> canais;
    for (const Sensor &s : sensores(semente))
        if (unidadeVirtual(QStringView(s.PoseidonIP).mid(1)))
            canais.insert(s.PoseidonIP.mid(1) + u';' + s.ID, s);
    return [canais, clima = Clima(semente)](const QString &endereco, const QString &id,
                                            qint64 t) -> std::optional<double> {
        const auto achado = canais.constFind(endereco + u';' + id);
        if (achado == canais.cend())
            return ligado(clima, endereco, id.toInt(), t) ? 1 : 0;
        const Sensor &s = *achado;
        const Momento m = clima.momento(t);
        if (!s.activo || m.semCorrente || clima.sensorDesligado(s.lugar, t).em(t))
            return std::nullopt;
        const double v = s.mede->valor(clima, s.local, s.lugar, m);
        return s.mede->comEscala ? s.SensUIMin + v * (s.SensUIMax - s.SensUIMin) : v;
    };
}

QString argumentosDasUnidades(quint64 semente) {
    const std::vector<Sensor> todos = sensores(semente);
    const auto numero = [](double v) { return QString::number(v, 'f', 1); };
    QString texto = u"--clima=%1\n"_s.arg(semente);
    for (const Unidade &u : unidades()) {
        if (!unidadeVirtual(u.endereco))
            continue;
        texto += u"--unidade=%1\n--nome=%2\n--mac=%3\n--modelo=%4\n--porta-web=%5\n--porta-consola=%6\n"_s
                     .arg(u.endereco, u.nome, u.mac)
                     .arg(u.modelo)
                     .arg(portaWebDasUnidades)
                     .arg(portaConsolaDasUnidades);
        for (const Sensor &s : todos) {
            if (s.unidade.isEmpty() || QStringView(s.PoseidonIP).mid(1) != u.endereco)
                continue;
            // No wave of its own: the climate says what it reads.
            texto += linhaDoCanal(
                {s.ID, s.Descricao, s.unidade.toString(), u"0"_s, u"0"_s, numero(s.minimo), numero(s.maximo)});
        }
        for (const EntradaSpider &e : entradasSpider())
            if (e.endereco == u.endereco)
                texto += linhaDoCanal({QString::number(e.identificador), e.nome.toString(), u"s"_s});
    }
    return texto;
}

} // namespace demonstracao
