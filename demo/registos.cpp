#include "demo/historia.h"

#include "core/literais.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "demo/acaso.h"

#include <algorithm>

// Alarms, and what the inputs, outputs and conditions did.
namespace demonstracao {

namespace {

void gravarTabelaDeAlarmes(Historia &h, const QString &tabela, const std::vector<Alarme> &alarmes) {
    Insercao i(h.bd, tabela, {u"SondaID"_s, u"Nome"_s, u"Data"_s, u"Maximo"_s, u"Minimo"_s, u"Valor"_s});
    for (const Alarme &a : alarmes) {
        i.texto(0, a.sensor->SensorID);
        i.texto(1, a.sensor->Descricao);
        const QByteArray data = textoData(a.t);
        i.utf8(2, data);
        if (a.sensor->temMaximo())
            i.real(3, a.maximo);
        else
            i.texto(3, u"NA"_s);
        if (a.sensor->temMinimo())
            i.real(4, a.sensor->minimo);
        else
            i.texto(4, u"NA"_s);
        i.real(5, a.valor);
        i.gravar();
    }
}

QString nomeDoDispositivo(const QString &endereco) {
    for (const Unidade &u : unidades())
        if (u.endereco == endereco)
            return u.nome.toString();
    return {};
}

struct Verificado {
    qint64 inicio, fim;
    QString endereco, nome, descricao;
};

// Alarms that people answered for: the long stretches outside the limits, and the flooded cellar now and then.
std::vector<Verificado> alarmesVerificados(const Historia &h) {
    constexpr qint64 deMonta = 3600;
    std::vector<Verificado> v;
    for (const Episodio &e : h.episodios) {
        const qint64 fim = e.fim > 0 ? e.fim : h.fim;
        if (fim - e.inicio < deMonta)
            continue;
        const QString endereco = e.sensor->PoseidonIP.mid(1);
        v.push_back(
            {e.inicio, e.fim, endereco, nomeDoDispositivo(endereco), u"Fora de limites: "_s + e.sensor->Descricao});
    }
    constexpr qint64 passo = 47 * 86400;
    for (qint64 t = h.inicio() + 86400; t < h.fim; t += passo) {
        v.push_back({t, t + 2700, u"127.0.0.21"_s, u"Damocles Portaria"_s, u"Inundação Cave"_s});
        v.push_back({t + 300000, t + 301500, u"127.0.0.31"_s, u"Controlador AVAC"_s, u"Filtro Colmatado"_s});
    }
    std::erase_if(v, [&h](const Verificado &a) { return a.inicio >= h.fim; });
    std::stable_sort(v.begin(), v.end(), [](const auto &a, const auto &b) { return a.inicio < b.inicio; });
    return v;
}

void gravarVerificados(Historia &h) {
    constexpr int pessoas = 6;
    constexpr int quemJaSaiu = 9; // has no row among the users any more
    Insercao i(h.bd, u"MaskListaAlarmes"_s,
               {u"DataI"_s, u"DataF"_s, u"VerefData"_s, u"VerefPor"_s, u"IP"_s, u"IP_Nome"_s, u"Descricao"_s});
    for (const Verificado &a : alarmesVerificados(h)) {
        const quint64 acaso = misturar(h.clima.chaveDe(0), a.inicio);
        const qint64 verificacao = (a.fim > 0 ? a.fim : h.fim) + 600 + qint64(acaso % (14 * 3600));
        i.texto(0, QString::fromLatin1(textoData(a.inicio)));
        if (a.fim > 0)
            i.texto(1, QString::fromLatin1(textoData(a.fim)));
        else
            i.nulo(1);
        if (a.fim > 0 && verificacao < h.fim) {
            i.texto(2, QString::fromLatin1(textoData(verificacao)));
            i.inteiro(3, acaso % 40 == 3 ? quemJaSaiu : 1 + qint64((acaso >> 8) % pessoas));
        } else {
            i.nulo(2);
            i.nulo(3);
        }
        i.texto(4, a.endereco);
        i.texto(5, a.nome);
        i.texto(6, a.descricao);
        i.gravar();
    }
}

struct Mudanca {
    qint64 t;
    QStringView endereco;
    int numero;
    bool ligado;
};

// What opens, and where its contact hangs. Spider inputs are registered under their identifier.
struct Contacto {
    QStringView endereco;
    int numero;
    Local local;
    int lugar;
    bool degelo;
};
constexpr Contacto contactos[] = {
    {u"127.0.0.2", 1, Local::Refrigerado, 1, false}, {u"127.0.0.2", 2, Local::Refrigerado, 2, false},
    {u"127.0.0.2", 3, Local::Congelado, 4, false},   {u"127.0.0.3", 1, Local::Laboratorio, 6, false},
    {u"127.0.0.6", 1, Local::Armazem, 10, false},    {u"127.0.0.21", 1, Local::Armazem, 200, false},
    {u"127.0.0.21", 2, Local::Armazem, 201, false},  {u"127.0.0.31", 1, Local::Tecnica, 202, false},
    {u"127.0.0.2", 302, Local::Congelado, 4, true},
};

void gravarMudancas(Historia &h, const QString &tabela, const QString &colunaNumero, std::vector<Mudanca> mudancas) {
    // In the order in which they happened, as they were registered; the charts take the table's order.
    std::stable_sort(mudancas.begin(), mudancas.end(), [](const auto &a, const auto &b) { return a.t < b.t; });
    Insercao i(h.bd, tabela, {u"DispositivoIP"_s, colunaNumero, u"Data"_s, u"Estado"_s, u"flag"_s});
    for (const Mudanca &m : mudancas) {
        if (m.t >= h.fim)
            break;
        i.texto(0, m.endereco.toString());
        i.inteiro(1, m.numero);
        i.texto(2, QString::fromLatin1(textoData(m.t)));
        i.texto(3, m.ligado ? u"True"_s : u"False"_s);
        const bool comNota = m.ligado && misturar(h.clima.chaveDe(m.numero), m.t) % 300 == 5;
        i.texto(4, comNota ? u"Visita da manutenção"_s : u" "_s);
        i.gravar();
    }
}

std::vector<Mudanca> mudancasDosContactos(const Historia &h) {
    std::vector<Mudanca> v;
    for (const Contacto &c : contactos) {
        for (qint64 hora = h.inicio() / 3600; hora < h.fim / 3600; ++hora) {
            Evento e;
            if (!c.degelo)
                e = h.clima.abertura(c.local, c.lugar, hora);
            else if (const Evento d = h.clima.degelo(c.local, c.lugar, hora * 3600 + 3599); d.inicio >= hora * 3600)
                e = d;
            if (e.fim <= e.inicio)
                continue;
            v.push_back({e.inicio, c.endereco, c.numero, true});
            v.push_back({e.fim, c.endereco, c.numero, false});
        }
    }
    for (qint64 bloco = h.inicio() / Clima::segundosPorCorte; bloco <= h.fim / Clima::segundosPorCorte; ++bloco)
        if (const Evento e = h.clima.corteDeCorrente(bloco); e.inicio >= h.inicio()) { // mains lost and back
            v.push_back({e.inicio - 2, u"127.0.0.3", 2, true});
            v.push_back({e.fim + 2, u"127.0.0.3", 2, false});
        }
    return v;
}

std::vector<Mudanca> mudancasDasSaidas(const Historia &h) {
    std::vector<Mudanca> v;
    for (const Episodio &e : h.episodios) { // the sirens and the lamp follow the alarms
        const bool frio = e.sensor->PoseidonIP.endsWith(u"127.0.0.2");
        if (!frio && !e.sensor->PoseidonIP.endsWith(u"127.0.0.3"))
            continue;
        const QStringView endereco = frio ? u"127.0.0.2" : u"127.0.0.3";
        const qint64 fim = e.fim > 0 ? e.fim : h.fim;
        v.push_back({e.inicio, endereco, 1, true});
        v.push_back({std::min(e.inicio + 300, fim), endereco, 1, false});
        if (frio) {
            v.push_back({e.inicio, endereco, 2, true});
            v.push_back({fim, endereco, 2, false});
        }
    }
    for (qint64 dia = h.inicio() / 86400 + 1; dia < h.fim / 86400; ++dia) { // the fan of the cellar
        v.push_back({dia * 86400 + 8 * 3600, u"127.0.0.31", 1, true});
        v.push_back({dia * 86400 + 19 * 3600 + 1800, u"127.0.0.31", 1, false});
    }
    return v;
}

struct Periodo {
    QString chave;
    qint64 inicio, fim; // fim 0: still true
};

void gravarPeriodos(Historia &h, const QString &tabela, const QString &coluna, std::vector<Periodo> periodos) {
    std::stable_sort(periodos.begin(), periodos.end(),
                     [](const auto &a, const auto &b) { return a.inicio < b.inicio; });
    Insercao i(h.bd, tabela, {coluna, u"DataON"_s, u"DataOFF"_s, u"flag"_s});
    for (const Periodo &p : periodos) {
        if (p.inicio >= h.fim)
            break;
        i.texto(0, p.chave);
        i.texto(1, QString::fromLatin1(textoData(p.inicio)));
        if (p.fim > 0 && p.fim < h.fim)
            i.texto(2, QString::fromLatin1(textoData(p.fim)));
        else
            i.nulo(2);
        i.texto(3, misturar(h.clima.chaveDe(3), p.inicio) % 25 == 4 ? u"Visto pelo piquete"_s : u" "_s);
        i.gravar();
    }
}

void gravarCondicoes(Historia &h) {
    std::vector<Periodo> deSensores, deEntradas, deGrupos;
    for (const Episodio &e : h.episodios) {
        for (size_t i = 0; i < 4; ++i)
            if (e.sensor == &h.sensores[i])
                deSensores.push_back({u"CS%1"_s.arg(i + 1), e.inicio, e.fim});
        if (e.sensor->grupo == 1 && (e.fim == 0 || e.fim - e.inicio >= 1800))
            deGrupos.push_back({u"G1"_s, e.inicio, e.fim});
    }
    constexpr qint64 demasiado = 300; // a door open for so long makes its condition true
    for (const auto &[chave, contacto] : {std::pair(u"CI1"_s, contactos[0]), std::pair(u"CI2"_s, contactos[3])})
        for (qint64 hora = h.inicio() / 3600; hora < h.fim / 3600; ++hora)
            if (const Evento e = h.clima.abertura(contacto.local, contacto.lugar, hora); e.fim - e.inicio > demasiado) {
                deEntradas.push_back({chave, e.inicio + demasiado, e.fim});
                if (e.fim - e.inicio > 3 * demasiado)
                    deGrupos.push_back({u"G2"_s, e.inicio + demasiado, e.fim});
            }
    for (qint64 bloco = h.inicio() / Clima::segundosPorCorte; bloco <= h.fim / Clima::segundosPorCorte; ++bloco)
        if (const Evento e = h.clima.corteDeCorrente(bloco); e.inicio >= h.inicio())
            deEntradas.push_back({u"CI3"_s, e.inicio, e.fim});
    gravarPeriodos(h, u"REGISTO_C_Sensores"_s, u"CondicaoID"_s, std::move(deSensores));
    gravarPeriodos(h, u"REGISTO_C_Inputs"_s, u"CondicaoID"_s, std::move(deEntradas));
    gravarPeriodos(h, u"REGISTO_C_Grupos"_s, u"GrupoID"_s, std::move(deGrupos));
}

} // namespace

bool ligado(const Clima &clima, QStringView endereco, int numero, qint64 t) {
    for (const Contacto &c : contactos) {
        if (c.endereco != endereco || c.numero != numero)
            continue;
        if (c.degelo)
            return clima.degelo(c.local, c.lugar, t).em(t);
        const qint64 hora = t / 3600;
        return clima.abertura(c.local, c.lugar, hora - 1).em(t) || clima.abertura(c.local, c.lugar, hora).em(t);
    }
    return false;
}

void gravarAlarmes(Historia &h) {
    for (const auto &[medida, alarmes] : h.alarmes)
        if (const QStringView tabela = medida->grandeza.alarmes; !tabela.isEmpty())
            gravarTabelaDeAlarmes(h, tabela.toString(), alarmes);
    gravarVerificados(h);
}

void gravarRegistos(Historia &h) {
    gravarMudancas(h, u"REGISTO_Inputs"_s, u"InputNum"_s, mudancasDosContactos(h));
    gravarMudancas(h, u"REGISTO_Outputs"_s, u"OutputNum"_s, mudancasDasSaidas(h));
    gravarCondicoes(h);
}

} // namespace demonstracao
