#include "demo/unidadesVirtuais.h"

#include "core/literais.h"
#include "demo/catalogo.h"

#include <QStringList>

#include <algorithm>

namespace demonstracao {

namespace {

constexpr QStringView enderecos[] = {u"127.0.0.2", u"127.0.0.3"};

// What a unit calls the quantities that it measures; it knows no others.
QString unidadeDe(char letra) {
    switch (letra) {
    case 'C':
        return u"C"_s;
    case '%':
        return u"%RH"_s;
    case 'V':
        return u"V"_s;
    case 'A':
        return u"mA"_s;
    default:
        return {};
    }
}

struct Onda {
    double centro, amplitude;
};
Onda ondaDe(const Sensor &s) {
    const PerfilLocal &p = perfilDe(s.local);
    if (s.letra == 'C')
        return {p.base, std::max(1.0, p.dia + p.rapido)};
    if (s.letra == '%')
        return {p.humidade, std::max(2.0, p.humidadeVariacao / 2)};
    const double gama = s.SensUIMax - s.SensUIMin;
    return {s.SensUIMin + gama / 2, gama / 6};
}

QString linhaDoCanal(const QStringList &partes) {
    return u"--canal="_s + partes.join(u';') + u'\n';
}

} // namespace

bool unidadeVirtual(QStringView endereco) {
    return std::find(std::begin(enderecos), std::end(enderecos), endereco) != std::end(enderecos);
}

QString argumentosDasUnidades(quint64 semente) {
    const std::vector<Sensor> todos = sensores(semente);
    const auto numero = [](double v) { return QString::number(v, 'f', 1); };
    QString texto;
    for (const Unidade &u : unidades()) {
        if (!unidadeVirtual(u.endereco))
            continue;
        texto += u"--unidade=%1\n--nome=%2\n--mac=%3\n--modelo=%4\n--porta-web=%5\n--porta-consola=%6\n"_s
                     .arg(u.endereco, u.nome, u.mac)
                     .arg(u.modelo)
                     .arg(portaWebDasUnidades)
                     .arg(portaConsolaDasUnidades);
        for (const Sensor &s : todos) {
            const QString unidade = unidadeDe(s.letra);
            if (unidade.isEmpty() || QStringView(s.PoseidonIP).mid(1) != u.endereco)
                continue;
            const Onda onda = ondaDe(s);
            texto += linhaDoCanal({s.ID, s.Descricao, unidade, numero(onda.centro), numero(onda.amplitude),
                                   numero(s.minimo), numero(s.maximo)});
        }
        for (const EntradaSpider &e : entradasSpider())
            if (e.endereco == u.endereco)
                texto += linhaDoCanal({QString::number(e.identificador), e.nome.toString(), u"s"_s});
    }
    return texto;
}

} // namespace demonstracao
